// A tempo from taps, fine steps, long presses and drags.

#include "controls/tap_tempo.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct TapTempo : testing::Test {
    TapTempo() {
        tap.addTarget(this, "t", control_event::valueChanged, [this](Control&) { ++told; });
    }
    RunLoop loop;
    MOK_TAP tap{loop};
    int told = 0;
};

TEST_F(TapTempo, IsMeasuredBetweenTapsUntilTwoBeatsPass) {
    const std::tuple<double, double, int> taps[] = {
        {0.0, 120.0, 0},  {0.5, 120.0, 1}, {1.1, 100.0, 1},  {2.4, 100.0, 0},
        {2.4, 100.0, 0},  {2.3, 100.0, 0}, {-5.0, 100.0, 0}, {std::nan(""), 100.0, 0},
        {2.41, 999.0, 1}, {2.5, 667.0, 1}, {3.5, 667.0, 0},  {6.4, 21.0, 1},
        {12.0, 20.0, 1},  {18.1, 20.0, 0}, {21.2, 20.0, 0}};
    for (const double start : {0.0, 100.0}) { // a run loop goes along, or is late
        tap.resetTapCounter();
        for (const auto& [at, tempo, wanted] : taps) {
            if (start == 0.0 && at > 0.0) loop.advance(at);
            tap.TapTimeSync(at < 0.0 ? at : start + at);
            EXPECT_EQ(tap.value(), tempo) << at;
            EXPECT_EQ(std::exchange(told, 0), wanted) << at;
        }
        tap.setValue(120.0);
    }
}

TEST_F(TapTempo, StepsByQuarters) {
    const std::tuple<double, double, double, const char*> cases[] = {
        {120.0, 120.25, 119.75, "120"},  {100.333, 100.5, 100.25, "100.33"},
        {120.8, 121.0, 120.75, "120.8"}, {998.9, 999.0, 998.75, "998.9"},
        {999.0, 999.0, 998.75, "999"},   {20.0, 20.25, 20.0, "20"}};
    for (const auto& [from, up, down, label] : cases) {
        tap.setValue(from);
        EXPECT_EQ(tap.label(), label);
        tap.incrBPMFrac();
        EXPECT_EQ(tap.value(), up) << from;
        tap.setValue(from);
        tap.decrBPMFrac();
        EXPECT_EQ(tap.value(), down) << from;
    }
    EXPECT_EQ(told, 2 * 6 - 2); // not where it stayed
}

TEST_F(TapTempo, FollowsPressesAndDrags) {
    tap.longPressEvent_plus(true);
    loop.advance(0.25);
    EXPECT_EQ(tap.value(), 120.75);
    tap.longPressEvent_minus(true);
    tap.longPressEvent_plus(false); // no longer the one that counts
    loop.advance(0.5);
    EXPECT_EQ(tap.value(), 120.0);
    tap.longPressEvent_minus(false);
    loop.advance(2.0);
    tap.beginTempoDrag();
    for (const auto& [points, tempo] :
         {std::pair{-10.0, 117.5}, {1e6, 999.0}, {std::nan(""), 999.0}, {0.0, 120.0}}) {
        tap.tempoDrag(points);
        EXPECT_EQ(tap.value(), tempo) << points;
    }
}

} // namespace
} // namespace zephyra
