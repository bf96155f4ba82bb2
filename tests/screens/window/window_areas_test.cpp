// Hands on what is no knob: what they press, what it says of itself then, and how it looks.
#include "engine/envelope_menu.h"
#include "screens/draw/brush.h"
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Areas : Hands {
    Areas() {
        scene.screen().context().help = [this](const std::string& sentence) { told = sentence; };
    }
    juce::Component& part(std::string_view title) {
        juce::Component* const found = scene.findTitled(title);
        EXPECT_NE(found, nullptr) << title;
        return found ? *found : scene.screen();
    }
    juce::Image look(const char* title) {
        juce::Component& of = part(title);
        return window.picture().getClippedImage(
            window.getLocalArea(&of, of.getLocalBounds()));
    }
    std::string described(const char* title) { return part(title).getDescription().toStdString(); }
    std::string number(ControlId id) {
        return std::to_string(std::lround(scene.asMain(
            [id](auto& view) { return view._GRANULATOR_STREAM.displayed(id); })));
    }
    void drag(Point from, Point to) { window.press(from), window.dragTo(to), window.release(); }
    void loseSound() {
        scene.asMain([](auto& view) {
            SampleReference lost;
            lost.path = "/nowhere/Lost Bells.wav";
            view.sampleLoader.loadReference(lost, SoundUse::play);
        });
        scene.play(0.1);
        press(Key::returnKey); // the alert's
        scene.frames(2);
    }
    std::string told;
};

TEST_F(Areas, DoWhatIsWrittenOnThem) {
    Box menuAt;
    std::vector<MenuRow> menuRows;
    int located = 0;
    scene.screen().context().openMenu = [&](const Box& at, auto rows) {
        menuAt = at;
        menuRows = std::move(rows);
    };
    scene.screen().context().locateSample = [&] { ++located; };
    const auto preset = [&] { return described("Preset"); };
    const auto echo = [this] { return number(echoSwitch); };
    const auto envelope = [this] { return std::to_string(plugin.system().stream().envelope()); };
    const auto picker = [this] {
        EnvelopePicker* const one = scene.find<EnvelopePicker>();
        return one ? one->getDescription().toStdString() : "closed";
    };
    const auto tile = [this](double column, double row) { // of the open picker's
        const EnvelopePicker& one = *scene.find<EnvelopePicker>();
        const double columns = static_cast<double>((kEnvelopeMenu.size() + 1) / 2);
        return window.getLocalPoint(&one, juce::Point((column + 0.5) / columns * one.getWidth(),
                                                      (row + 0.5) / 2.0 * one.getHeight())
                                              .toFloat());
    };
    const auto kept = [this] {
        auto& exported = plugin.system().view.liveExport;
        while (exported.isSaving()) scene.play(kFewBlocks);
        return exported.lastSaved().filename().string();
    };
    const auto keep = [this] { return described("Keep what LIVE heard"); };
    const auto menuOf = [&](const char* title) {
        return [&, title] {
            juce::Component& of = part(title);
            const bool isThere = brush::rectangle(std::exchange(menuAt, {})) ==
                                 window.getLocalArea(&of, of.getLocalBounds());
            return std::string(isThere ? "there" : "elsewhere");
        };
    };
    const Point pill = middle("Echo Switch"), shape = middle("Grain Envelope");
    const struct {
        const char* what;
        std::function<void()> hand;
        std::function<std::string()> shows;
        std::string expected;
    } rows[] = {
        {"switch", [&] { window.click(pill); }, echo, "1"},
        {"right button", [&] { rightClick(pill); }, echo, "1"},
        {"let go elsewhere", [&] { drag(pill, pill + Point(0, 60)); }, echo, "1"},
        {"Enter", [&] { part("Echo Switch").grabKeyboardFocus(), press(Key::returnKey); }, echo, "0"},
        {"beside the pill", [&] { window.click(pill + Point(0, -9)); }, echo, "1"},
        {"envelopes", [&] { window.click(shape); }, picker, "Hanning"},
        {"hovered", [&] { window.moveTo(tile(2, 1)); }, picker, "Pulse 1"},
        {"left", [&] { window.moveTo(stageAt(0.5, 0.5)); }, picker, "Hanning"},
        {"picked", [&] { window.click(tile(4, 0)); }, envelope, "4"},
        {"closed", [] {}, picker, "closed"},
        {"again", [&] { window.click(shape); }, picker, "Sync"},
        {"keyboard elsewhere", [&] { scene.knob(width).grabKeyboardFocus(); }, picker, "closed"},
        {"down", [&] { part("Grain Envelope").grabKeyboardFocus(), press(Key::downKey); }, picker, "Sync"},
        {"Escape",
         [&] { press(Key::escapeKey); },
         [&] { return juce::Component::getCurrentlyFocusedComponent()->getTitle().toStdString(); },
         "Grain Envelope"},
        {"let go elsewhere", [&] { drag(shape, shape + Point(0, 90)); }, picker, "closed"},
        {"nothing to keep", [&] { window.click(middle("Keep what LIVE heard")); }, kept, ""},
        {"nothing to keep", [] {}, keep, "unavailable"},
        {"LIVE", [&] { window.click(middle("LIVE")), scene.play(0.5); }, keep, "Keep 1 s"},
        {"let go elsewhere",
         [&] {
             drag(middle("Keep what LIVE heard"), middle("Keep what LIVE heard") + Point(0, 90));
         },
         kept,
         ""},
        {"kept", [&] { window.click(middle("Keep what LIVE heard")); }, kept, "Rec 1.wav"},
        {"next", [&] { window.click(middle("Next preset")), scene.play(0.1); }, preset, "Dawn Chorus"},
        {"next", [&] { window.click(middle("Next preset")), scene.play(0.1); }, preset, "Clockwork Thrush"},
        {"previous", [&] { window.click(middle("Previous preset")), scene.play(0.1); }, preset, "Dawn Chorus"},
        {"right", [&] { part("Preset").grabKeyboardFocus(), press(Key::rightKey), scene.play(0.1); }, preset, "Clockwork Thrush"},
        {"left", [&] { press(Key::leftKey), scene.play(0.1); }, preset, "Dawn Chorus"},
        {"menu", [&] { window.click(middle("Preset")); }, menuOf("Preset"), "there"},
        {"bank", [&] { std::ranges::find(menuRows, "Glass Weather", &MenuRow::text)->chosen(), scene.play(0.1); }, menuOf("Preset"), "there"},
        {"how much", [&] { rightClick(middle("Randomise")); }, menuOf("Randomise"), "there"},
        {"B", [&] { window.click(middle("Compare B")); }, [&] { return plugin.system().view.edits.undoName(); }, "Compare B"},
        {"locate", [&] { loseSound(), window.click(middle("Locate")); }, [&] { return std::to_string(located); }, "1"},
    };
    for (const auto& [what, hand, shows, expected] : rows) {
        SCOPED_TRACE(what);
        hand();
        PictureWindow::settle();
        scene.play(kFewBlocks);
        EXPECT_EQ(shows(), expected);
    }
}

} // namespace
} // namespace zephyra
