// Hands on what is no knob: what they press, what it says of itself then, and how it looks.
#include "engine/envelope_menu.h"
#include "screens/draw/brush.h"
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Areas : Hands {
    juce::Component& part(std::string_view title) {
        juce::Component* const found = scene.findTitled(title);
        EXPECT_NE(found, nullptr) << title;
        return found ? *found : scene.screen();
    }
    juce::Image look(const char* title) {
        juce::Component& of = part(title);
        return window.picture().getClippedImage(window.getLocalArea(&of, of.getLocalBounds()));
    }
    std::string described(const char* title) { return part(title).getDescription().toStdString(); }
    std::string number(ControlId id) {
        return std::to_string(std::lround(
            scene.asMain([id](auto& view) { return view._GRANULATOR_STREAM.displayed(id); })));
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
        {"Enter", [&] { part("Echo Switch").grabKeyboardFocus(), press(Key::returnKey); }, echo,
         "0"},
        {"beside the pill", [&] { window.click(pill + Point(0, -9)); }, echo, "1"},
        {"sync", [&] { window.click(middle("Scan Sync")); },
         [&] {
             return std::string(scene.knob(measures).isShowing() ? "measures " : "") +
                    (scene.knob(scanning).isShowing() ? "scanning" : "");
         },
         "measures "},
        {"envelopes", [&] { window.click(shape); }, picker, "Hanning"},
        {"hovered", [&] { window.moveTo(tile(2, 1)); }, picker, "Pulse 1"},
        {"left", [&] { window.moveTo(stageAt(0.5, 0.5)); }, picker, "Hanning"},
        {"picked", [&] { window.click(tile(4, 0)); }, envelope, "4"},
        {"closed", [] {}, picker, "closed"},
        {"again", [&] { window.click(shape); }, picker, "Sync"},
        {"keyboard elsewhere", [&] { scene.knob(width).grabKeyboardFocus(); }, picker, "closed"},
        {"down", [&] { part("Grain Envelope").grabKeyboardFocus(), press(Key::downKey); }, picker,
         "Sync"},
        {"Escape", [&] { press(Key::escapeKey); },
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
         kept, ""},
        {"kept", [&] { window.click(middle("Keep what LIVE heard")); }, kept, "Rec 1.wav"},
        {"next", [&] { window.click(middle("Next preset")), scene.play(0.1); }, preset,
         "Dawn Chorus"},
        {"next", [&] { window.click(middle("Next preset")), scene.play(0.1); }, preset,
         "Clockwork Thrush"},
        {"previous", [&] { window.click(middle("Previous preset")), scene.play(0.1); }, preset,
         "Dawn Chorus"},
        {"right",
         [&] { part("Preset").grabKeyboardFocus(), press(Key::rightKey), scene.play(0.1); }, preset,
         "Clockwork Thrush"},
        {"left", [&] { press(Key::leftKey), scene.play(0.1); }, preset, "Dawn Chorus"},
        {"menu", [&] { window.click(middle("Preset")); }, menuOf("Preset"), "there"},
        {"bank",
         [&] {
             std::ranges::find(menuRows, "Glass Weather", &MenuRow::text)->chosen(),
                 scene.play(0.1);
         },
         menuOf("Preset"), "there"},
        {"how much", [&] { rightClick(middle("Randomise")); }, menuOf("Randomise"), "there"},
        {"B", [&] { window.click(middle("Compare B")); },
         [&] { return plugin.system().view.edits.undoName(); }, "Compare B"},
        {"locate", [&] { loseSound(), window.click(middle("Locate")); },
         [&] { return std::to_string(located); }, "1"},
    };
    for (const auto& [what, hand, shows, expected] : rows) {
        SCOPED_TRACE(what);
        hand();
        PictureWindow::settle();
        scene.play(kFewBlocks);
        EXPECT_EQ(shows(), expected);
    }
}

TEST_F(Areas, LookOtherWhereTheyAreOther) {
    const auto left = [&] { window.moveTo(stageAt(0.5, 0.1)); };
    const struct {
        const char* title;
        std::function<void()> hand;
    } rows[] = {{"Play", [&] { window.click(middle("Play")), left(); }},
                {"Grains",
                 [&] {
                     plugin.setParameter(static_cast<AUParameterAddress>(density), 400.0f);
                     scene.play(0.5);
                 }},
                {"Undo", [&] { window.click(middle("Scan Sync")), left(); }},
                {"Width", [&] { window.moveTo(at(width)); }},
                {"Width", left},
                {"Width", [&] { part("Width").grabKeyboardFocus(), press(Key::upKey); }},
                {"Width", [&] { window.click(stageAt(0.5, 0.5)); }}, // without a frame again
                {"Echo Switch", [&] { window.click(middle("Echo Switch")), left(); }},
                {"Left Delay", [&] { window.click(middle("Echo Switch")), left(); }},
                {"Compare B", [&] { window.click(middle("Compare B")), left(); }},
                {"Freeze", [&] { window.press(middle("Freeze")); }},
                {"Freeze", [&] { window.dragTo(middle("LIVE")); }}};
    for (const auto& [title, hand] : rows) {
        scene.frames(2);
        const juce::Image before = look(title);
        hand();
        scene.frames(5); // what glows follows more slowly
        const juce::Image after = look(title);
        bool isOther = false;
        for (int y = 0; y < after.getHeight(); ++y)
            for (int x = 0; x < after.getWidth(); ++x)
                isOther |= before.getPixelAt(x, y) != after.getPixelAt(x, y);
        EXPECT_TRUE(isOther) << title;
    }
    window.release();
}

TEST_F(Areas, SayOfThemselvesWhatTheyAre) {
    EXPECT_EQ(described("Play"), "stopped");
    window.click(middle("Play"));
    window.click(middle("Next preset"));
    scene.play(0.3);
    EXPECT_EQ(described("Play"), "playing");
    EXPECT_THAT(described("Grains"), testing::EndsWith(" grains"));
    window.wheel(at(pitch), 1.0);
    endWheel();
    scene.play(0.2);
    EXPECT_EQ(described("Preset"), "Dawn Chorus, changed");
    window.moveTo(middle("Preset"));
    EXPECT_THAT(told, testing::HasSubstr("Dawn Chorus"));
    window.moveTo(middle("Bar and beat"));
    scene.frames(1);
    const std::string bar = described("Bar and beat");
    const std::size_t point = bar.find('.');
    EXPECT_THAT(told, testing::HasSubstr("Bar " + bar.substr(0, point) + ", beat " +
                                         bar.substr(point + 1)));
    const std::string sound = this->sound().filename().string();
    window.moveTo(middle("Sound"));
    EXPECT_EQ(told, helpText(HelpId::soundNamed, sound));
    EXPECT_THAT(described("Sound"), testing::StartsWith(sound + ", "));
    loseSound();
    window.moveTo(middle("Sound"));
    EXPECT_EQ(told, helpText(HelpId::soundMissing, "Lost Bells.wav"));
    type("l");
    scene.play(0.1);
    EXPECT_EQ(told, helpText(HelpId::soundLive, "Live input")); // under the pointer still
    for (const auto& [title, is] :
         {std::pair{"Freeze", true}, {"Rewind", false}, {"Compare A", true}, {"Undo", false}})
        EXPECT_EQ(dynamic_cast<ScreenButton&>(part(title))
                      .createAccessibilityHandler()
                      ->getCurrentState()
                      .isCheckable(),
                  is)
            << title;
}

TEST_F(Areas, TellInATipWhatSmallThingsDo) {
    HelpTip& tip = *scene.find<HelpTip>();
    const auto tipAt = [&](Point at) {
        return tip.getTipFor(*window.getComponentAt(at)).toStdString();
    };
    EXPECT_THAT(tipAt(middle("Play")), testing::EndsWith("(Space)"));
    EXPECT_EQ(tipAt(at(width)), helpText(width));
    EXPECT_EQ(tipAt(stageAt(0.5, 0.2)), ""); // would cover it
    window.click(scene.numberOf(width));
    EXPECT_EQ(tipAt(at(width)), helpText(HelpId::value)); // on the field's letters
    press(Key::escapeKey);
    juce::ModifierKeys::currentModifiers = juce::ModifierKeys::leftButtonModifier;
    EXPECT_EQ(tipAt(at(width)), "");
    juce::ModifierKeys::currentModifiers = {};
    rightClick(at(pitch));
    EXPECT_EQ(tip.getTipFor(scene.knob(width)), juce::String());
    juce::PopupMenu::dismissAllActiveMenus();
    press(',', juce::ModifierKeys::commandModifier);
    EXPECT_EQ(tip.getTipFor(part("Fade in")), juce::String()); // the sheet tells it itself
    press(Key::escapeKey);

    const juce::String text(helpText(width));
    int smaller = 0;
    for (const double zoom : {1.0, 1.5}) {
        scene.screen().context().settings.zoom = zoom;
        scene.screen().context().settingsChanged();
        EXPECT_FALSE(tip.isVisible());
        const auto inside = scene.screen().getLocalBounds();
        for (const auto& at : {inside.getTopLeft(), inside.getCentre(),
                               inside.getBottomRight() - juce::Point(300, 10)}) {
            tip.displayTip(at, text);
            EXPECT_TRUE(inside.contains(tip.getBounds())) << at.toString();
            EXPECT_FALSE(tip.getBounds().contains(at)) << at.toString();
        }
        EXPECT_GT(tip.getHeight(), smaller);
        smaller = tip.getHeight();
    }
}

TEST_F(Areas, KeepTheKeyboardWhereAPressLeavesIt) {
    press(Key::tabKey);
    scene.knob(width).grabKeyboardFocus();
    EXPECT_TRUE(scene.knob(width).showsFocus());
    window.click(middle("Play"));
    EXPECT_TRUE(scene.knob(width).hasKeyboardFocus(false)); // buttons do not take it
    EXPECT_FALSE(scene.knob(width).showsFocus());
    scene.knob(pitch).grabKeyboardFocus();
    EXPECT_FALSE(scene.knob(pitch).showsFocus()); // a mouse's hand goes on
    press(Key::upKey);
    EXPECT_TRUE(scene.knob(pitch).showsFocus());
    endWheel();
    scene.screen().grabKeyboardFocus();
    press(Key::tabKey, juce::ModifierKeys::shiftModifier);
    EXPECT_TRUE(part("Dropped grains").hasKeyboardFocus(false));
}

} // namespace
} // namespace zephyra
