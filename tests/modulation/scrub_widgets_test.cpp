// What scrubbing fingers do to knobs, pads and keyboards.

#include "modulation/scrub_widgets.h"

#include "controls/mok_keyboard.h"
#include "controls/named_knobs.h"
#include "controls/pad.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct Scrubbing : testing::Test, MOK_KeyboardDelegate {
    Scrubbing() { loop.setClock(RunLoop::Clock::sample); } // no tick is skipped
    void keyDown_keyNum_forAmp(MOK_Keyboard*, int key, float) override { played.push_back(key); }
    void keyUp_keyNum(MOK_Keyboard*, int key) override { played.push_back(-key); }
    void add(Control& control, const PropertyDictionary& state) {
        scrub.setWrapperInfo_fromDictionary(&control, state);
    }
    void begin(double y, Finger finger = Finger::first) { scrub.touchBegan(finger, {0.5, y}, 0.0); }
    void move(double y, Finger finger = Finger::first) { scrub.touchMoved(finger, {0.9, y}, 0.0); }
    void run(double seconds) { loop.advance(loop.now() + seconds); }

    RunLoop loop;
    MOK_KNOB knob;
    MOK_PAD pad;
    MOK_Keyboard keyboard;
    std::vector<int> played; // releases are negative
    ScrubWidgets scrub{loop};
};

TEST_F(Scrubbing, MovesFromWhereTheControlStandsWithinItsRange) {
    knob.setValue(0.1f); // below the range: its nearer end counts
    add(knob, {{"MinRange", 0.2f}, {"MaxRange", 0.6f}, {"Velocity", 2.0}});
    add(pad, {{"MinRange", 1.0f}, {"MaxRange", 0.0f}, {"SecondFinger", true}});
    move(0.1); // of a finger that never began
    begin(0.9);
    move(0.9);
    EXPECT_EQ(knob.value(), 0.1f);
    move(0.8); // a fifth of the range upwards
    EXPECT_FLOAT_EQ(knob.value(), 0.28f);
    move(-5.0);
    move(-4.9); // turning back moves at once
    begin(0.5, Finger::second);
    move(0.25, Finger::second); // upwards along a reversed range
    for (const double bad : {std::nan(""), HUGE_VAL}) {
        move(bad);
        begin(bad, Finger::second);
        move(0.5, Finger::second);
    }
    move(-4.95);
    scrub.touchEnded(Finger::first, 0.0);
    move(0.0);
    EXPECT_FLOAT_EQ(knob.value(), 0.56f);
    EXPECT_EQ(std::tuple(pad.yValue(), pad.xValue()), std::tuple(0.25f, 0.5f));
}

TEST_F(Scrubbing, FollowsByGravityUntilItIsThereAndNoLonger) {
    knob.setValue(0.0f);
    add(knob, {{"Gravity", 0.5f}});
    int told = 0;
    knob.addTarget(this, "t", control_event::valueChanged, [&](Control&) { ++told; });
    begin(1.0);
    move(0.5);
    scrub.touchEnded(Finger::first, 0.0);
    EXPECT_EQ(knob.value(), 0.0f);
    run(0.25); // one time constant
    EXPECT_NEAR(knob.value(), 0.5 - 0.5 / std::exp(1.0), 1e-5);
    run(10.0);
    EXPECT_EQ(knob.value(), 0.5f);
    told = 0;
    run(10.0);
    EXPECT_EQ(told, 0);
    begin(1.0);
    move(0.8);
    run(0.1);
    knob.beginTracking({0.0, 0.0});
    knob.setValue(0.9f); // the hand wins, also once it has gone
    run(0.1);
    knob.endTracking({0.0, 0.0});
    run(1.0);
    EXPECT_EQ(knob.value(), 0.9f);
    move(0.7); // on from there
    run(10.0);
    EXPECT_FLOAT_EQ(knob.value(), 1.0f);
}

TEST_F(Scrubbing, GlidesOverKeysUntilTheFingerEnds) {
    keyboard.mKeyboardDelegate = this;
    add(keyboard, {{"MinRange", 0.5f}, {"MaxRange", 1.0f}});
    begin(1.0);
    EXPECT_TRUE(played.empty());
    for (const double y : {0.99, 0.98, 0.5, 0.0}) move(y);
    scrub.touchEnded(Finger::first, 0.0);
    EXPECT_EQ(played.back(), -48);
    begin(0.0);
    move(0.5); // on from where it was
    scrub.removeWidget(&keyboard);
    EXPECT_EQ(played, (std::vector{24, -24, 36, -36, 48, -48, 36, -36}));
}

} // namespace
} // namespace zephyra
