// What changes is painted, wherever it stands; what does not, is not.
#include "tests/screens/window/window_hands.h"

namespace zephyra {
namespace {

using enum ControlId;

constexpr int kBlock = 20;

/// Letters that are cut by a clip may differ in a colour's last bits.
bool isOther(const juce::Colour& a, const juce::Colour& b) {
    return std::abs(a.getRed() - b.getRed()) > 4 || std::abs(a.getGreen() - b.getGreen()) > 4 ||
           std::abs(a.getBlue() - b.getBlue()) > 4;
}

/// What areas keep as pictures is drawn again, but for traces, which would begin anew.
void layOutAnew(PictureScene& scene) {
    const ScreenLayout layout = layOut(1100, 700, 1.0);
    for (juce::Component* const child : scene.screen().getChildren()) {
        auto* const area = dynamic_cast<ScreenArea*>(child);
        const bool isTyped = dynamic_cast<PathArea*>(area) && scene.find<ValueField>();
        if (!area || dynamic_cast<StripArea*>(area) || isTyped) continue;
        area->layOut(layout);
        area->frame({});
    }
}

TEST_F(Hands, SeeWhatTheyChanged) {
    const auto key = [this](int code, juce::ModifierKeys keys = {}) {
        return [=, this] { press(code, keys); };
    };
    const auto click = [this](const char* title) {
        return [=, this] { window.click(middle(title)); };
    };
    const auto playing = [this](double seconds) { return [=, this] { scene.play(seconds); }; };
    const auto setting = [this](bool ScreenSettings::*field) {
        return [=, this] { scene.screen().context().settings.*field ^= true; };
    };
    const auto drop = [this](const char* name) {
        return [=, this] {
            window.drop(file(fs::path(ZEPHYRA_SOURCE_DIR) / "resources" / name), stageAt(0.5, 0.5));
        };
    };
    constexpr auto kCommand = juce::ModifierKeys::commandModifier;
    const std::pair<const char*, std::function<void()>> steps[] = {
        {"an LFO",
         [this] {
             scene.asMain(
                 [this](auto& view) { view.assignments.assign(knob(pitch), AssignmentType::lfo); });
         }},
        {"plays", click("Play")},
        {"", playing(0.5)},
        {"frozen", click("Freeze")},
        {"armed rewind", click("Rewind")},
        {"live", click("LIVE")},
        {"", playing(0.3)},
        {"file again", click("LIVE")},
        {"hover", [this] { window.moveTo(at(pitch)); }},
        {"elsewhere", [this] { window.moveTo(at(width)); }},
        {"button", [this] { window.moveTo(middle("Undo")); }},
        {"echo", click("Echo Switch")},
        {"ring", click("Ring Modulation Switch")},
        {"synced", click("Scan Sync")},
        {"echo synced", click("Echo Sync")},
        {"quarters", [this] { window.wheel(at(quarters), 1.0); }},
        {"B", click("Compare B")},
        {"randomised", click("Randomise")},
        {"loud", [this] { plugin.setParameter(static_cast<AUParameterAddress>(amplitude), 1.0f); }},
        {"", playing(1.0)},
        {"cleared", click("Level meter")},
        {"no meter", setting(&ScreenSettings::showsMeter)},
        {"no spectrum", click("Spectrum")},
        {"no scope", click("Scope")},
        {"meter", setting(&ScreenSettings::showsMeter)},
        {"spectrum", click("Spectrum")},
        {"", playing(0.3)},
        {"envelope",
         [this] { scene.asMain([](auto& view) { view._GRANULATOR_STREAM.pickEnvelope(7); }); }},
        {"normalised", [this] { window.wheel(at(normalize), -10.0); }},
        {"zoomed in", [this] { window.wheel(stageAt(0.4, 0.5), 3.0); }},
        {"whole", [this] { window.click(stageAt(0.4, 0.5), 2); }},
        {"region",
         [this] {
             scene.asMain([](auto& view) { view._GRANULATOR_STREAM.setRegion(0.2f, 0.7f); });
         }},
        {"held", [this] { window.press(stageAt(0.5, 0.3)); }},
        {"", playing(0.4)},
        {"let go", [this] { window.release(); }},
        {"another sound", drop("Blackbird.mp3")},
        {"", playing(0.2)},
        {"preset", click("Next preset")},
        {"", playing(0.2)},
        {"missing",
         [this] {
             scene.asMain([](auto& view) {
                 SampleReference lost;
                 lost.path = "/nowhere/Lost Bells.wav";
                 view.sampleLoader.loadReference(lost, SoundUse::play);
             });
         }},
        {"found", drop("Blackbird.mp3")},
        {"typing", [this] { window.click(scene.numberOf(density)); }},
        {"typed", key(Key::escapeKey)},
        {"settings", key(',', kCommand)},
        {"row", key(Key::downKey)},
        {"choice", key(Key::rightKey)},
        {"no settings", key(Key::escapeKey)},
        {"tab", key(Key::tabKey)},
        {"stops", click("Play")},
        {"", playing(4.0)},
    };
    juce::Image shown = window.picture();
    for (const auto& [what, hand] : steps) {
        window.takeRepaints();
        shown = window.picture();
        hand();
        window.repaintInto(shown); // as a display may, before the window's own frame
        PictureWindow::settle();
        scene.frames(4);
        window.repaintInto(shown);
        layOutAnew(scene);
        const juce::Image all = window.picture();
        juce::RectangleList<int> differs; // in blocks
        for (int y = 0; y < all.getHeight(); ++y)
            for (int x = 0; x < all.getWidth(); ++x)
                if (isOther(shown.getPixelAt(x, y), all.getPixelAt(x, y)))
                    differs.add(x / kBlock * kBlock, y / kBlock * kBlock, kBlock, kBlock);
        EXPECT_TRUE(differs.isEmpty()) << what << ": " << differs.getBounds().toString();
    }
}

} // namespace
} // namespace zephyra
