// The path as a component: its states drawn, what is painted, keys, and assistive technology.
#include "screens/draw/brush.h"
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
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

/// What of a component is asked to be painted.
struct Invalidated final : juce::CachedComponentImage {
    explicit Invalidated(juce::RectangleList<int>& all) : areas(all) {}
    void paint(juce::Graphics&) override {}
    bool invalidateAll() override { return areas.add({0, 0, 9999, 9999}), true; }
    bool invalidate(const juce::Rectangle<int>& area) override { return areas.add(area), true; }
    void releaseResources() override {}
    juce::RectangleList<int>& areas;
};

TEST_F(Window, PaintsNothingButTheKnobThatMoves) {
    asMain([](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.stopWithin(0.0);
        view._GRANULATOR_STREAM.setDisplayed(live, 0.0f); // what would be kept stays as long
    });
    play(1.5);
    juce::RectangleList<int> areas;
    path().setCachedComponentImage(new Invalidated(areas));
    areas.clear(); // of its beginning
    play(0.2);
    EXPECT_TRUE(areas.isEmpty());
    asMain([&](AudioUnitViewController& view) {
        view.assignments.assign(knob(pitch), AssignmentType::lfo);
    });
    play(0.1);
    areas.clear();
    for (int frame = 0; frame < 10; ++frame) {
        play(0.02);
        EXPECT_EQ(areas.getBounds(), cell(pitch).getBounds());
        areas.clear();
    }
    path().setCachedComponentImage(nullptr);
}

TEST_F(Window, TellsAssistiveTechnologyOfEachKnob) {
    int focus = 0;
    for (const PathCell& one : pathCells()) {
        if (one.kind != PathCellKind::knob) continue;
        KnobCell& knobCell = cell(one.id);
        const auto handler = knobCell.createAccessibilityHandler();
        EXPECT_EQ(handler->getRole(), juce::AccessibilityRole::slider);
        EXPECT_EQ(handler->getTitle(), juce::String(controlRange(one.id).name));
        EXPECT_TRUE(handler->getHelp().isNotEmpty());
        EXPECT_GT(knobCell.getExplicitFocusOrder(), focus); // in the order of the signal
        focus = knobCell.getExplicitFocusOrder();
        auto& value = *handler->getValueInterface();
        EXPECT_EQ(value.getCurrentValueAsString(), brush::text(knobCell.face().text.whole()));
        const auto range = value.getRange();
        const double shown = value.getCurrentValue();
        EXPECT_TRUE(!knobCell.isVisible() ||
                    static_cast<float>(shown) == knob(one.id).displayedValue());
        value.setValueAsString("0.5"); // which not all take
        value.setValue(range.getMaximumValue());
        EXPECT_FLOAT_EQ(knob(one.id).value(), knob(one.id).maximumValue()) << one.name;
    }
}

TEST_F(Window, KeepsTextWholeAndApart) {
    for (const double zoom : {0.75, 1.0, 1.5, 2.5})
        for (const auto& [width, height] : {std::pair{800, 520},
                                            {960, 620},
                                            {1100, 700},
                                            {1400, 900},
                                            {1800, 1100},
                                            {3840, 2160}}) {
            const ScreenLayout layout = layOut(width, height, zoom);
            SCOPED_TRACE(testing::Message() << width << " x " << height << " at " << zoom);
            for (const PathCell& one : pathCells()) {
                if (one.kind != PathCellKind::knob) continue;
                const CellPlace place = placeOf(one, layout);
                const char* const name = usesShortName(one, layout) ? one.shortName : one.name;
                const float needed = brush::regular(place.nameText).getStringWidthFloat(name);
                // What is left is the distance to the next name.
                EXPECT_LE(needed + 0.5 * place.nameText, place.cell.width) << name;
            }
            for (const PathSection& section : pathSections()) {
                const SectionPlace place = placeOf(section, layout);
                const float end = static_cast<float>(place.titleX) +
                                  brush::medium(place.titleText).getStringWidthFloat(section.title);
                if (section.hasSync)
                    EXPECT_LT(end + 2, place.syncBox.x) << section.title;
                else
                    EXPECT_LT(end, place.lineTo);
            }
        }
}

} // namespace
} // namespace zephyra
