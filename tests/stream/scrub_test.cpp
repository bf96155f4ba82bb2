// Hands on the scan: what they hold, who hears of it, and the takes that they leave.

#include "tests/support/stream_probe.h"
#include "tests/support/test_stream.h"

namespace zephyra {
namespace {

using Log = std::vector<std::string>;
using Points = std::vector<float>;
using enum ControlId;

constexpr double kTick = 1.0 / 15;
constexpr float kAlone = 0.9375f; // where the scan is when nothing moved it

/// Follows the fingers, and sees that none is lost.
struct Follower : ToldSettings, TouchListener {
    std::set<Finger> down;
    void touchBegan(Finger f, Point, double) override { EXPECT_TRUE(down.insert(f).second); }
    void touchMoved(Finger finger, Point at, double time) override {
        EXPECT_TRUE(down.contains(finger) && std::isfinite(at.x + at.y + time));
        told.push_back(finger == Finger::first ? "first" : "second");
    }
    void touchEnded(Finger f, double) override { EXPECT_EQ(down.erase(f), 1u); }
};

struct Scrubbing : testing::Test {
    Scrubbing() {
        s->setSettings(&follower);
        area.addListener(&follower);
        s->play();
    }
    float speed() { return StreamProbe::fields(s->engine()).speed; }
    /// A microsecond is left over, so that what is due later is surely done after its time.
    void press(Button& button) {
        button.sendActionsForControlEvents(control_event::touchUpInside);
        s.pass(1e-6);
    }
    void downbeat() {
        s.pass(1e-6);
        s->syncStateTempoForte();
        s.pass(1e-6);
    }
    /// Where each of so many ticks leaves the scan.
    Points play(std::size_t ticks) {
        Points heard(ticks);
        for (float& at : heard) {
            s->engine().setScanPhase(double{kAlone});
            s.pass(kTick);
            at = s->getTimePhasor();
        }
        return heard;
    }
    Follower follower; // before the stream that tells it
    TestStream s;
    StreamControls& c = s->controls;
    ScrubArea& area = s->scrubArea;
};

TEST_F(Scrubbing, LetsNothingElseMoveTheScanWhileAHandHoldsIt) {
    s->setRegion(0.25f, 0.75f);
    area.touchesBegan(7, {0.9, 0.0}, 0.0);
    area.touchesMoved(7, {0.5, 0.0}, 0.1);
    s->setLinear(scrubbingWave, 0.3f);
    s->ui_rewind();
    area.driveScan(0.4f, 0.1);
    s->setDisplayed(scanning, 2.0f);
    s->stop();
    s->play();
    s->setRegion(0.375f, 0.875f);
    EXPECT_TRUE(area.scanPosition() == 0.5f && speed() == 0.0f && s->isScrubbing());
    area.touchesEnded(7, 0.2);
    EXPECT_TRUE(speed() == 2.0f && !s->isScrubbing());
    EXPECT_EQ(follower.told, (Log{"down", "moved", "first", "up"}));
    for (int i = 0; i < 3; ++i, s.pass(0.08)) area.driveScan(0.4f, 0.1);
    EXPECT_TRUE(speed() == 0.0f && area.scanPosition() == 0.4f && !area.isHeld());
    s.pass(0.03);
    area.driveScan(0.5f, 0.0);
    area.driveScan(NAN, 1.0);
    EXPECT_TRUE(speed() == 2.0f && area.scanPosition() == 0.5f);
    s->____play();
    s.pass(1.0);
    s->ui_playStop(); // the scan stops at once, though the sound fades
    area.driveScan(0.6f, 0.1);
    EXPECT_EQ(area.scanPosition(), 0.5f);
}

TEST_F(Scrubbing, GoesOnStandingAfterAFingerThatRestedUntilWhatMayLetGo) {
    const std::pair<std::function<void()>, float> cases[] = {
        {[&] { s->ui_rewind(); }, 0.0f},
        {[&] { area.longPressFirstFingerGesture(); }, 0.5f},
        {[&] { s->setDisplayed(scanSync, 1), s->ui_playStop(), downbeat(); }, 0.5f},
        {[&] {
             area.touchesBegan(2, {0.7, 0}, 1), area.touchesEnded(2, 2);
         },
         0.7f}};
    for (const auto& [letGo, place] : cases) {
        area.touchesBegan(1, {0.5, 0.5}, 0.0);
        s.pass(0.501);
        area.touchesEnded(1, 0.6);
        s->setLinear(scrubbingWave, 0.3f);
        EXPECT_TRUE(area.isPressAndHold() && speed() == 0.0f && area.scanPosition() == 0.5f);
        letGo();
        EXPECT_TRUE(!area.isHeld() && speed() != 0.0f && area.scanPosition() == place) << place;
    }
    for (const double y : {0.511, 0.5}) { // moves, or is let go while it presses
        area.touchesBegan(1, {0.1, 0.5}, 0.0);
        area.touchesMoved(1, {0.1, y}, 0.1);
        s.pass(0.501);
        EXPECT_EQ(area.isPressAndHold(), y == 0.5);
        y == 0.5 ? area.longPressFirstFingerGesture() : area.touchesEnded(1, 0.6);
        area.touchesMoved(1, {0.9, 0.5}, 1.0);
        EXPECT_TRUE(!area.isHeld() && area.scanPosition() == 0.1f);
    }
}

TEST_F(Scrubbing, KnowsTwoFingersAndEndsEachThroughAnyDisorder) {
    for (const TouchId id : {1, 2, 3}) area.touchesBegan(id, {0.25, 0.5}, 0.0);
    area.touchesEnded(1, 0.2);
    for (const TouchId id : {2, 3}) area.touchesMoved(id, {0.5, 0.5}, 0.3);
    EXPECT_TRUE(area.scanPosition() == 0.25f && !area.isHeld());
    area.touchesBegan(2, {0.75, 0.5}, 0.4); // its old finger ends, and it is the first now
    EXPECT_EQ(follower.down, std::set{Finger::first});
    EXPECT_EQ(follower.told, (Log{"down", "up", "second", "down"}));
}

TEST_F(Scrubbing, RecordsUnderAFingerThatWasThereBefore) {
    area.touchesBegan(1, {0.25, 0.5}, 0.0);
    press(c.scrubRec);
    area.touchesMoved(1, {0.5, 0.5}, 0.1);
    s.pass(kTick);
    EXPECT_EQ(c.scrubMessage.title, "Scrub recording...");
}

TEST_F(Scrubbing, RecordsWhileAHandMovesAndLoopsAllButTheLastPoint) {
    press(c.scrubRec);
    EXPECT_EQ(c.scrubMessage.title, "Scrub to start recording");
    for (const double x : {0.25, 0.5, 0.75, 0.125}) {
        area.touchesBegan(1, {x, 0.5}, 0.0);
        s.pass(kTick);
        area.touchesEnded(1, 0.0);
        s.pass(kTick); // nothing is recorded
    }
    EXPECT_EQ(c.scrubMessage.title, "Scrub recording...");
    EXPECT_FLOAT_EQ(c.scrubRecIndicator.progress(), 3.0f / 1799);
    press(c.scrubPlay);
    EXPECT_TRUE(c.scrubRec.tag == 0 && c.scrubPlay.tag == 1 && c.scrubPlay.userInteractionEnabled);
    EXPECT_EQ(play(5), (Points{0.25f, 0.5f, 0.75f, 0.25f, 0.5f}));
    press(c.scrubRec);
    area.touchesBegan(1, {0.5, 0.5}, 0.0);
    s.pass(1799 * kTick + 1e-3);
    EXPECT_EQ(c.scrubRec.tag - c.scrubPlay.tag, 1);
    s.pass(kTick);
    EXPECT_TRUE(c.scrubRec.tag == 0 && s->scrubRecorder.take().size() == 1799);
    area.touchesCancelled(1, 0.0); // a rest would stand
    press(c.scrubPlay);
    EXPECT_EQ(play(2), Points(2, 0.5f));
}

TEST_F(Scrubbing, PlaysATakeAtTheTempoThatTheScanIsSyncedTo) {
    const std::tuple<double, float, Points, Points> cases[] = {
        {60, 0, {}, {kAlone}},
        // Rounds of three points: six ticks, one and a half.
        {60, 1, {0, 0.25f, 0.5f}, {0, 0.125f, 0.25f, 0.375f, 0.5f, 0, 0, 0.125f}},
        {240, 1, {0, 0.25f, 0.5f}, {0, 0.5f, 0.25f, 0, 0.5f}},
        {60, 0, {0, 0.25f, 0.5f}, {0, 0.25f, 0.5f, 0}},
        {-9, 1, {0.25f, 0.5f}, {0.25f, 0.25f}},
        {1e300, 1, {0.25f, 0.5f}, {0.25f, 0.25f}},
        {120, 0, {0.5f}, {0.5f, 0.5f}}};
    for (const auto& [bpm, sync, take, expected] : cases) {
        EXPECT_EQ(s->scrubRecorder.setTake(take), !take.empty());
        s->setDisplayed(scanSync, sync);
        s->syncStateDidChangedWithBPM(bpm);
        press(c.scrubPlay);
        downbeat();
        area.touchesBegan(1, {kAlone, 0.5}, 0.0);
        EXPECT_EQ(play(2), Points(2, kAlone));
        area.touchesEnded(1, 0.0);
        EXPECT_EQ(play(expected.size()), expected) << bpm;
        press(c.scrubPlay);
    }
    EXPECT_EQ(c.scrubRecIndicator.progress(), 0.0f); // 0 of 0
    for (const Points& bad : {Points{1.5f}, Points{NAN}, Points(1801, 0.5f)})
        EXPECT_FALSE(s->scrubRecorder.setTake(bad));
}

TEST_F(Scrubbing, PlaysAndRewindsOnTheDownbeatWhileTheScanIsSynced) {
    s->scrubRecorder.setTake(Points{0.25f, 0.5f});
    press(c.scrubRec);
    for (const bool synced : {true, false, true}) {
        s->setDisplayed(scanSync, synced);
        s.pass(1e-6);
        s->ui_armRewind();
        for (int presses = 0; synced && presses < 3; ++presses) press(c.scrubPlay);
        EXPECT_EQ(c.scrubPlay.backgroundColor.has_value(), synced); // what was armed is dropped
        EXPECT_EQ(c._rewind.backgroundColor.has_value(), synced);
    }
    EXPECT_EQ(c.scrubRec.tag + c.scrubPlay.tag, 0);
    downbeat();
    EXPECT_EQ(area.scanPosition(), 0.0f);
    EXPECT_FALSE(c.scrubPlay.backgroundColor || c._rewind.backgroundColor);
    EXPECT_EQ(play(2), (Points{0.25f, 0.5f}));
    for (const float place : {0.5f, 0.0f}) { // the take's start, then the stream's
        press(c.scrubRewind);
        EXPECT_EQ(area.scanPosition(), place);
        press(c.scrubPlay);
    }
}

} // namespace
} // namespace zephyra
