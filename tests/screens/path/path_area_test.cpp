// The path as a component: its states drawn, what is painted, keys, and assistive technology.
#include "screens/draw/brush.h"
#include "screens/zephyra_screen.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace zephyra {
namespace {

using enum ControlId;

struct Window : testing::Test {
    Window() { screen.frame(0.0); }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    PathArea& path() {
        for (juce::Component* const child : screen.getChildren())
            if (auto* const area = dynamic_cast<PathArea*>(child)) return *area;
        std::abort();
    }
    KnobCell& cell(ControlId id) { return *path().knobCell(id); }
    void play(double seconds) {
        for (const double end = now + seconds; now < end; now += 0.02) {
            plugin.render(2);
            screen.frame(now);
        }
    }
    juce::Image picture() { return path().createComponentSnapshot(path().getLocalBounds()); }
    /// For eyes: beside the build.
    void keep(const char* name) {
        const auto folder = std::filesystem::path(ZEPHYRA_BINARY_DIR) / "pictures";
        std::filesystem::create_directories(folder);
        const juce::File file((folder / name).string());
        file.deleteFile();
        juce::FileOutputStream stream(file);
        juce::PNGImageFormat().writeImageToStream(picture(), stream);
    }
    template <typename Hand>
    void asMain(Hand&& hand) {
        const auto held = plugin.main();
        hand(plugin.system().view);
    }
    static juce::MouseEvent
    mouse(juce::Component& at, juce::Point<float> point, juce::Point<float> down, int clicks = 1,
          juce::ModifierKeys keys = juce::ModifierKeys::leftButtonModifier) {
        return {juce::Desktop::getInstance().getMainMouseSource(),
                point,
                keys,
                0,
                0,
                0,
                0,
                0,
                &at,
                &at,
                juce::Time::getCurrentTime(),
                down,
                juce::Time::getCurrentTime(),
                clicks,
                point != down};
    }

    juce::ScopedJuceInitialiser_GUI gui;
    HostedPlugin plugin{PluginKind::effect};
    ZephyraScreen screen{plugin};
    double now = 0.0;
};

TEST_F(Window, DrawsItsStates) {
    asMain([&](AudioUnitViewController& view) {
        MOK_KNOB& moved = knob(pitch);
        view.assignments.assign(moved, AssignmentType::lfo);
        auto* const lfo = view.assignments.getLfoWidgetsMapping()->getWrapperID(&moved);
        lfo->setMinRange(0.28f);
        lfo->setMaxRange(0.86f);
        lfo->setHz(0.8);
        view.assignments.assign(knob(rndPitch), AssignmentType::lfo);
        view.midiManager.bind({.trigger = {.number = 1},
                               .control = &knob(density),
                               .min = 0.3f,
                               .max = 0.8f,
                               .takeover = MidiTakeover::jump});
        view.assignments.assign(knob(width), AssignmentType::scrubY);
        knob(rndLength).isRandomizable = false;
        for (const ControlId on : {echoSwitch, scanSync, echoSync})
            view._GRANULATOR_STREAM.setDisplayed(on, 1.0f);
    });
    plugin.midi({0xB0, 1, 30});
    play(0.4);
    plugin.set(amplitude, 0.8f);
    asMain([&](AudioUnitViewController& view) { view.midiManager.learn(knob(jittering)); });
    play(0.1);
    const auto enter = mouse(cell(pitch), {}, {});
    cell(pitch).mouseEnter(enter);
    const float middle = static_cast<float>(cell(length).getWidth()) / 2;
    cell(length).mouseDown(mouse(cell(length), {middle, 10}, {middle, 10}));
    cell(normalize).openField();
    cell(dryWet).focusGained(juce::Component::focusChangedByTabKey);
    play(0.04);
    keep("path-states.png");
    EXPECT_TRUE(cell(measures).isVisible() && cell(quarters).isVisible());
    EXPECT_FALSE(cell(scanning).isVisible());
    EXPECT_TRUE(cell(length).face().isHeld);
    for (const auto& [width, height, name] : {std::tuple{800, 520, "path-states-800.png"},
                                              std::tuple{1800, 1100, "path-states-1800.png"}}) {
        screen.setSize(width, height);
        keep(name);
    }
    screen.setSize(1100, 700);
    path().openEnvelopes();
    keep("path-envelopes.png");
    screen.setSize(800, 520);
    keep("path-envelopes-800.png");
}

} // namespace
} // namespace zephyra
