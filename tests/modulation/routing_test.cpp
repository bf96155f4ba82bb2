// What LFOs and tilt do to knobs and scans, at which rate, and what is saved of it.

#include "controls/named_knobs.h"
#include "modulation/accelerometer_widgets.h"
#include "modulation/lfo_widgets_mapping.h"
#include "tests/support/fake_scan.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct Routing : testing::Test {
    Routing() {
        knob.setRange(-10.0f, 10.0f);
        scan.position = 0.4f;
        knob.addTarget(this, "t", control_event::valueChanged, [this](Control&) { ++told; });
    }
    LfoWidgetWrapper& add(Control& control, std::int64_t shape) {
        table.addWidget(&control);
        table.getWrapperID(&control)->setLfoShapeFromWrapper(shape);
        return *table.getWrapperID(&control);
    }
    void run(int ticks) { loop.advance(loop.now() + ticks * kLfoTick); }

    HeardInstance instance;
    RunLoop& loop = instance.runLoop;
    MOK_KNOB knob{"knob"};
    FakeScan scan;
    LFO_WIDGETS_MAPPING table{instance};
    int told = 0;
};

TEST_F(Routing, SweepsTheRangeAsAHandWouldUnlessSomethingHoldsIt) {
    knob.setValueNorm(0.2f);
    table.setWrapperInfo_fromDictionary( // a quarter of a cycle each tick
        &knob, {{"MinRange", 0.2f}, {"MaxRange", 0.8f}, {"Shape", kLfoLineRise}, {"Hz", 8.0}});
    run(1);
    EXPECT_NEAR(knob.valueNorm(), 0.35f, 1e-6f);
    EXPECT_EQ(told, 1);
    knob.beginTracking({0.0, 0.0});
    run(1);
    knob.endTracking({0.0, 0.0});
    table.at(0).setSuspended(true);
    run(1);
    table.at(0).setSuspended(false);
    table.setIsEnabled(false);
    run(5);
    EXPECT_NEAR(knob.valueNorm(), 0.35f, 1e-6f);
    table.setIsEnabled(true);
    run(1); // the LFO went on under the finger and while suspended, not while disabled
    EXPECT_NEAR(knob.valueNorm(), 0.8f, 1e-6f);
    EXPECT_EQ(told, 2);
    table.addWidget(&scan); // is not reached any more once an action has cleared them
    knob.addTarget(this, "clear", control_event::valueChanged,
                   [this](Control&) { table.removeAllWidgets(); });
    run(2);
    EXPECT_TRUE(told == 3 && scan.stood == 0.0);
}

TEST_F(Routing, SetsOutFromWhereTheControlStands) {
    constexpr float kEnds[] = {0.0f, 0.1f, 0.37f, 0.5f, 0.9f, 1.0f};
    for (int i = 0; i < 9 * 36 * 65; ++i) {
        const std::int64_t shape = i / (36 * 65) - 1;
        const float min = kEnds[i / 65 / 6 % 6], max = kEnds[i / 65 % 6];
        const float place = static_cast<float>(i % 65) / 64.0f;
        if (shape == kLfoSquare) continue; // it knows only the ends
        knob.setValueNorm(place);
        LfoWidgetWrapper& wrapper = add(knob, shape);
        wrapper.setMinRange(min);
        wrapper.setMaxRange(max);
        wrapper.resetPhase();
        const double start = min + wrapper.currentLFO.valueAtPhase() * (max - min);
        ASSERT_NEAR(start, std::clamp(place, std::min(min, max), std::max(min, max)), 1 / 160.0)
            << shape << " from " << min << " to " << max << " at " << place;
    }
    knob.setValueNorm(0.9f);
    table.addWidget(&knob); // with the shape that it begins with
    EXPECT_NEAR(table.at(0).currentLFO.valueAtPhase(), 0.9, 1 / 160.0);
}

TEST_F(Routing, FollowsTheTempoOfItsNoteValue) {
    LfoWidgetWrapper& wrapper = add(knob, kLfoSine);
    EXPECT_EQ(wrapper.currentLFO.hz(), 0.25);
    wrapper.setLinkIsEnabled(true);
    using Row = std::array<double, 4>; // beats per minute, multiplier, note value, Hz
    for (const auto& [bpm, mult, note, hz] :
         {Row{120.0, 1.0, 7, 2.0}, Row{90.0, 2.0, 1, 0.1875}, Row{-1.0, 0.5, 5, 8 / 3.0},
          Row{HUGE_VAL, 1.0, 7, 2.0}, Row{1e308, 0.0, 20, 24.0}, Row{60.0, 64.0, -5, 0.016},
          Row{60.0, 2.0, 99, 16.0}}) {
        wrapper.setClockSub(static_cast<int>(note));
        wrapper.setClockSubMult(mult);
        table.setTempo(bpm);
        EXPECT_DOUBLE_EQ(wrapper.currentLFO.hz(), hz) << bpm << ' ' << note;
    }
}

TEST_F(Routing, MovesTheScanThatNoHandHolds) {
    LfoWidgetWrapper& wrapper = add(scan, kLfoLineRise);
    wrapper.setHz(3.2); // a tenth of a cycle each tick
    run(1);
    EXPECT_NEAR(scan.position, 0.5f, 1e-6f);
    EXPECT_EQ(scan.stood, 1.5 / 32);
    scan.held = true;
    run(1);
    scan.position = 0.1f; // where the hand leaves it
    scan.held = false;
    wrapper.setGravity(0.5f);
    run(1);
    EXPECT_NEAR(scan.position, 0.7 - 0.6 * std::exp(-0.125), 1e-6); // from there, lagging 0.25 s
    scan.position = 0.1f;                                           // what it reports may lag
    run(1);
    EXPECT_NEAR(scan.position, 0.8 - 0.1 * std::exp(-0.125) - 0.6 * std::exp(-0.25), 1e-6);
}

TEST_F(Routing, FollowsTheTiltAndLeavesWhatRestsToTheHand) {
    Accelerometer& accelerometer = instance.accelerometer;
    AccelerometerWidgets widgets(instance);
    for (const auto axis : {Accelerometer::Axis::y, Accelerometer::Axis::x})
        widgets.addWidget_forAxis(&knob, axis);
    run(1);
    EXPECT_EQ(told, 0); // nothing is tilted yet
    accelerometer.set(-0.5f, 1.0f);
    run(2);
    EXPECT_EQ(knob.valueNorm(), 0.25f);
    knob.beginTracking({0.0, 0.0});
    accelerometer.set(0.0f, -1.0f);
    run(1);
    EXPECT_EQ(told, 1);
    knob.endTracking({0.0, 0.0});
    widgets.getWrapperID(&knob)->setMinRange(1.0f);
    widgets.getWrapperID(&knob)->setGravity(0.5f);
    accelerometer.set(1.0f, 1.0f);
    run(8);
    EXPECT_NEAR(knob.valueNorm(), 1.0 - 0.75 / std::exp(1.0), 1e-5); // though the tilt rests

    PropertyArray state = widgets.getState([](const Control& control) { return control.channel; });
    for (const std::int64_t axis : {1, 2})
        state.push_back(PropertyDictionary{{"name", axis == 1 ? "gone" : "knob"}, {"axis", axis}});
    // The last holds.
    state.insert(state.begin(), PropertyDictionary{{"name", "knob"}, {"axis", 1}});
    widgets.removeWidget(&knob);
    const auto find = [&](const auto& name) { return name == "knob" ? &knob : nullptr; };
    const StateFindings findings = widgets.restoreState(state, find);
    ASSERT_EQ(findings.size(), 3u);
    EXPECT_TRUE(findings[2].text.starts_with("1 tilt assignment(s) stand there twice"));
    ASSERT_EQ(widgets.count(), 1u);
    EXPECT_EQ(widgets.axisOf(&knob), Accelerometer::Axis::x);
    EXPECT_EQ(widgets.getWrapperID(&knob)->minRange(), 1.0f);
}

TEST(Gravity, LeadsThereAtTheSameTimeAtAnyTickRate) {
    for (const double rate : {32.0, 1000.0}) {
        const auto step = [&](MOK_KNOB& knob, float target, float max, float gravity) {
            return knob.setValueWithAppropriateGraphicsRefreshInterval_rangeMin_rangeMax_gravity(
                target, 0.1f, max, gravity, 1.0 / rate);
        };
        MOK_KNOB knob;
        knob.setValue(1.0f);
        for (int i = 0; i < rate / 4; ++i) EXPECT_FALSE(step(knob, 0.0f, 0.2f, 0.5f));
        EXPECT_NEAR(knob.value(), 0.1 + 0.9 / std::exp(1.0), 1e-5) << rate;
        MokKnobEnum steps({}, {"a", "b", "c", "d"});
        int ticks = 1;
        while (!step(steps, 3.0f, 3.0f, 0.9f) && ++ticks < 100 * rate)
            EXPECT_TRUE(steps.index() > 0 || ticks / rate < 0.47); // 2.25 s · ln(3 / 2.5)
        EXPECT_EQ(steps.index(), 3);
        EXPECT_TRUE(step(knob, 7.0f, 0.2f, 0.0f));
        EXPECT_EQ(knob.value(), 0.2f);
    }
}

} // namespace
} // namespace zephyra
