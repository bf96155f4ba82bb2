// Fingers: which of them is on what, and whether they scrub or zoom on the stage.
#include "screens/model/stage/stage_fingers.h"
#include "screens/model/touch/touch_clock.h"
#include "screens/model/touch/touch_router.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

namespace zephyra {
namespace {

constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();

/// Writes down what it is told: "(1" began, "-1" moved, ")1" ended, "x1" cancelled, "r1" rested.
struct Thing final : TouchTarget {
    bool touchBegan(const TouchEvent& event) override { return note('(', event), wants; }
    void touchMoved(const TouchEvent& event) override {
        note('-', event);
        if (moved) moved();
    }
    void touchEnded(const TouchEvent& event, int taps) override {
        note(')', event);
        if (taps > 0) text += '*' + std::to_string(taps);
    }
    void touchCancelled(const TouchEvent& event) override { note('x', event); }
    void touchRested(const TouchEvent& event) override { note('r', event); }
    bool followsAtOnce() const override { return atOnce; }
    void note(char what, const TouchEvent& event) {
        text += what + std::to_string(event.id);
        at = event.at;
        time = event.time;
    }
    std::string text;
    Point at;
    double time = 0.0;
    std::function<void()> moved;
    bool wants = true, atOnce = true;
};

/// Two things, the left and the right half of 200 pixels.
struct Scene final : TouchScene {
    Hit touchTargetAt(Point at) override {
        if (at.y < 0.0) return {};
        return at.x < 100.0 ? Hit{left.get(), {}} : Hit{right.get(), {100.0, 0.0}};
    }
    std::unique_ptr<Thing> left = std::make_unique<Thing>(), right = std::make_unique<Thing>();
};

struct Step {
    TouchId id;
    char phase; // as Thing has it; '!' cancels all, 't' is a frame
    double x, y, time;
};

TouchEvent eventOf(const Step& step) {
    const TouchPhase phase = step.phase == '('   ? TouchPhase::began
                             : step.phase == '-' ? TouchPhase::moved
                             : step.phase == ')' ? TouchPhase::ended
                                                 : TouchPhase::cancelled;
    return {step.id, phase, {step.x, step.y}, step.time};
}

void play(TouchRouter& router, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        if (step.phase == '!')
            router.cancelAll();
        else if (step.phase == 't')
            router.frame(step.time);
        else
            router.take(eventOf(step));
    }
}

TEST(TouchRouter, GivesEachFingerToWhatItCameDownOn) {
    const struct {
        const char* what;
        std::vector<Step> steps;
        const char *left, *right;
    } kRows[] = {
        {"stays with it",
         {{1, '(', 90, 5, 0}, {1, '-', 150, 5, 1}, {1, ')', 150, 5, 2}},
         "(1-1-1)1",
         ""},
        {"two",
         {{1, '(', 9, 5, 0}, {2, '(', 150, 5, 0}, {1, ')', 9, 5, 1}, {2, ')', 150, 5, 1}},
         "(1-1)1*1",
         "(2-2)2*1"},
        {"an identity again",
         {{1, '(', 9, 5, 0}, {1, ')', 9, 5, 1}, {1, '(', 150, 5, 2}},
         "(1-1)1*1",
         "(1x1"},
        {"an identity in use",
         {{1, '(', 9, 5, 0}, {1, '(', 150, 5, 1}, {1, ')', 150, 5, 2}},
         "(1x1",
         "(1-1)1*1"},
        {"no begin", {{1, '-', 9, 5, 0}, {1, ')', 9, 5, 1}, {1, 'x', 9, 5, 1}}, "", ""},
        {"two ends", {{1, '(', 9, 5, 0}, {1, ')', 9, 5, 1}, {1, ')', 9, 5, 2}}, "(1-1)1*1", ""},
        {"an end without a place", {{1, '(', 9, 5, 0}, {1, ')', kNowhere, 5, 1}}, "(1)1*1", ""},
        {"places that are none",
         {{1, '(', kNowhere, 5, 0},
          {2, '(', 9, 5, kNowhere},
          {3, '(', 9, 5, 0},
          {3, '-', 9, kNowhere, 1}},
         "(3x3",
         ""},
        {"on nothing", {{1, '(', 9, -5, 0}, {1, '-', 9, 5, 1}, {1, ')', 9, 5, 2}}, "", ""},
        {"lost",
         {{1, '(', 9, 5, 0}, {1, 'x', kNowhere, kNowhere, 1}, {1, ')', 9, 5, 2}},
         "(1x1",
         ""},
        {"covered",
         {{1, '(', 9, 5, 0},
          {2, '(', 150, 5, 0},
          {0, '!', 0, 0, 0},
          {1, '-', 50, 5, 1},
          {2, ')', 150, 5, 1}},
         "(1x1",
         "(2x2"},
        {"a second tap in time",
         {{1, '(', 9, 5, 0}, {1, ')', 9, 5, .1}, {2, '(', 12, 5, .2}, {2, ')', 12, 5, .4}},
         "(1-1)1*1(2-2)2*2",
         ""},
        {"two taps side by side",
         {{1, '(', 95, 5, 0}, {1, ')', 95, 5, .1}, {2, '(', 105, 5, .2}, {2, ')', 105, 5, .3}},
         "(1-1)1*1",
         "(2-2)2*1"},
        {"too late",
         {{1, '(', 9, 5, 0}, {1, ')', 9, 5, .1}, {2, '(', 9, 5, .3}, {2, ')', 9, 5, .5}},
         "(1-1)1*1(2-2)2*1",
         ""},
        {"too far off",
         {{1, '(', 9, 5, 0}, {1, ')', 9, 5, .1}, {2, '(', 59, 5, .2}, {2, ')', 59, 5, .3}},
         "(1-1)1*1(2-2)2*1",
         ""},
        {"rests",
         {{1, '(', 9, 5, 0},
          {1, '-', 12, 5, .5},
          {0, 't', 0, 0, .6},
          {0, 't', 0, 0, .8},
          {0, 't', 0, 0, .9},
          {1, ')', 12, 5, 1}},
         "(1-1r1-1)1",
         ""},
        {"rests not alone",
         {{1, '(', 9, 5, 0}, {2, '(', 150, 5, 0}, {0, 't', 0, 0, 2}},
         "(1x1",
         "(2x2"},
    };
    for (const auto& row : kRows) {
        Scene scene;
        {
            TouchRouter router(scene);
            play(router, row.steps);
        }
        EXPECT_EQ(scene.left->text, row.left) << row.what;
        EXPECT_EQ(scene.right->text, row.right) << row.what;
    }
}

TEST(TouchRouter, KeepsTapsStillAndBeginsMovementsWhereTheyLeaveThem) {
    Scene scene;
    scene.right->atOnce = false;
    TouchRouter router(scene);
    router.setScale(2.0); // a tap may go 16 pixels
    play(router, {{1, '(', 120, 50, 0}, {1, '-', 130, 50, 1}, {1, '-', 140, 50, 2}});
    EXPECT_EQ(scene.right->text, "(1-1");
    EXPECT_EQ(scene.right->at, (Point{20, 50}));
    play(router, {{1, '-', 125, 60, 3}, {1, ')', 125, 60, 4}});
    EXPECT_EQ(scene.right->at, (Point{5, 60}));
    EXPECT_EQ(scene.right->text, "(1-1-1-1)1"); // no tap
}

TEST(TouchRouter, ForgetsWhatIsDestroyedUnwillingOrTooMuch) {
    Scene scene;
    scene.right->wants = false;
    TouchRouter router(scene);
    for (TouchId id = 1; id <= 20; ++id) router.take(eventOf({id, '(', id % 2 ? 9. : 150., 5, 0}));
    EXPECT_EQ(router.fingers(), TouchRouter::kMostFingers);
    play(router, {{2, '-', 150, 50, 1}, {2, ')', 150, 50, 1}});
    EXPECT_EQ(scene.right->text, "(2(4(6(8(10(12(14(16");
    scene.left.reset();
    play(router, {{1, '-', 9, 50, 1}, {1, ')', 9, 50, 1}, {0, '!', 0, 0, 0}});
    EXPECT_EQ(router.fingers(), 0u);
}

TEST(TouchRouter, LetsGoOnceOfWhatItsLastMovementCovered) {
    Scene scene;
    TouchRouter router(scene);
    scene.left->moved = [&] { router.cancelAll(); };
    play(router, {{1, '(', 9, 5, 0}, {2, '(', 150, 5, 1}, {1, ')', 9, 5, 2}});
    EXPECT_EQ(scene.left->text, "(1-1x1");
    EXPECT_EQ(scene.right->text, "(2x2");
}

TEST(TouchRouter, TellsOfTheLastTimeWhereADisplayTellsOfNone) {
    Scene scene;
    TouchRouter router(scene);
    play(router, {{1, '(', 9, 5, 3}, {1, 'x', 9, 5, kNowhere}});
    EXPECT_EQ(scene.left->time, 3.0);
}

TEST(TouchClock, KeepsTheDisplaysDistances) {
    TouchClock clock;
    EXPECT_EQ(clock.onWindow(100.0, 7.5), 7.5);
    EXPECT_EQ(clock.onWindow(100.5, 8.1), 8.0);   // heard late
    EXPECT_EQ(clock.onWindow(101.0, 8.25), 8.25); // and sooner than before
    EXPECT_EQ(clock.onWindow(3.0, 9.0), 9.0);     // the display's clock has jumped
}

// --- The stage, 1000 x 400 pixels ---

struct Heard final : TouchListener {
    void touchBegan(Finger finger, Point, double) override { note('(', finger); }
    void touchMoved(Finger finger, Point at, double) override { note('-', finger), last = at; }
    void touchEnded(Finger finger, double) override { note(')', finger); }
    void note(char what, Finger finger) {
        text += what;
        text += finger == Finger::first ? '1' : '2';
    }
    std::string text;
    Point last;
};

struct StageUnderFingers : testing::Test {
    StageUnderFingers() {
        stream.scrubArea.addListener(&heard);
        fingers.setStage(1000.0, 400.0, 10.0);
        hands.putScan(0.5);
    }
    ~StageUnderFingers() override { stream.scrubArea.removeListener(&heard); }

    HostedPlugin plugin{PluginKind::instrument};
    MOK_SCRUB_GRANULATOR& stream = plugin.system().stream();
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    Heard heard;
    StageView view;
    StageHands hands{context, view};
    StageFingers fingers{hands};
};

TEST_F(StageUnderFingers, TheFirstScrubsAndALaterSecondPlaysWhatIsAssigned) {
    fingers.began(1, {250, 100}, 1.0);
    EXPECT_NEAR(hands.scan(), 0.25, 1e-4);
    fingers.began(2, {900, 200}, 1.2);
    fingers.began(3, {100, 200}, 1.2); // nothing is for a third
    fingers.moved(2, {900, 300}, 1.3);
    fingers.moved(3, {400, 200}, 1.3);
    EXPECT_NEAR(heard.last.y, 0.75, 1e-9);
    fingers.moved(1, {300, 100}, 1.4);
    EXPECT_NEAR(hands.scan(), 0.3, 1e-4);
    fingers.cancelled(2, 1.5);
    fingers.ended(1, 1.6);
    fingers.ended(3, 1.6);
    EXPECT_EQ(heard.text, "(1(2-2-1)2)1");
    EXPECT_FALSE(stream.scrubArea.isHeld());
    EXPECT_TRUE(view.isWhole());
}

TEST_F(StageUnderFingers, TwoTogetherZoomAndLeaveTheScanWhereItWas) {
    const auto pinch = [this](double left, double right) {
        fingers.moved(1, {left, 200}, 2.0);
        fingers.moved(2, {right, 200}, 2.0);
    };
    int edits = 0;
    context.beginEdit = [&](const std::string&) { ++edits; };
    fingers.began(1, {400, 200}, 1.0);
    fingers.began(2, {600, 200}, 1.1);
    EXPECT_NEAR(hands.scan(), 0.5, 1e-4);
    EXPECT_EQ(edits, 0); // nothing that undo could take back
    EXPECT_EQ(heard.text, "(1)1");
    pinch(300, 700);
    EXPECT_NEAR(view.at(0.3), 0.4, 0.02); // the sound stays under the fingers
    EXPECT_NEAR(view.at(0.7), 0.6, 0.02);
    pinch(400, 800);
    EXPECT_NEAR(view.at(0.4), 0.4, 0.02);
    EXPECT_NEAR(view.span(), 0.5, 1e-9);
    fingers.began(3, {10, 10}, 2.1); // nothing
    pinch(500, 500);                 // no farther in than two fingers' width
    fingers.moved(2, {500 + 2 * StageFingers::kLeastApart, 200}, 2.2);
    EXPECT_NEAR(view.span(), 0.5, 1e-9);
    fingers.ended(1, 3.0);
    const StageView left = view;
    fingers.moved(2, {0, 0}, 3.1); // has nothing to zoom with
    fingers.moved(3, {0, 0}, 3.1);
    EXPECT_EQ(view, left);
    fingers.ended(2, 3.2);
    fingers.ended(3, 3.2);
    EXPECT_EQ(heard.text, "(1)1");
    EXPECT_FALSE(stream.scrubArea.isHeld());
    fingers.began(1, {250, 200}, 4.0); // and all begins anew
    EXPECT_TRUE(stream.scrubArea.isHeld());
    fingers.cancelled(1, 4.1);
    EXPECT_FALSE(stream.scrubArea.isHeld());
}

} // namespace
} // namespace zephyra
