// The path as a component: what is painted, its texts, and assistive technology.
#include "screens/draw/brush.h"
#include "screens/zephyra_screen.h"
#include "tests/screens/no_display.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

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
    template <typename Hand>
    void asMain(Hand&& hand) {
        const auto held = plugin.main();
        hand(plugin.system().view);
    }

    juce::ScopedJuceInitialiser_GUI gui;
    HostedPlugin plugin{PluginKind::effect};
    ZephyraScreen screen{plugin};
    double now = 0.0;
};

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
