// Hands on the stage: what reaches the stream's scan and region, and what is shown of the stream.
#include "controls/knob.h"
#include "screens/model/stage/hold_mark.h"
#include "screens/model/stage/stage_contents.h"
#include "screens/model/stage/stage_hands.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

struct Heard final : TouchListener {
    void touchBegan(Finger finger, Point at, double) override { note('(', finger, at); }
    void touchMoved(Finger finger, Point at, double) override { note('-', finger, at); }
    void touchEnded(Finger finger, double) override { note(')', finger, {}); }
    void note(char what, Finger finger, Point at) {
        text += what;
        text += finger == Finger::first ? '1' : '2';
        last = at;
    }
    std::string text;
    Point last;
};

struct Stage : testing::Test {
    Stage() {
        context.beginEdit = [this](const std::string& name) { edits += "(" + name; };
        context.endEdit = [this] { edits += ")"; };
        stream.scrubArea.addListener(&heard);
    }
    ~Stage() override { stream.scrubArea.removeListener(&heard); }

    double scan() { return double{stream.getTimePhasor()}; }
    FrameTime next() {
        time.now += 1.0 / 60.0;
        time.elapsed = 1.0 / 60.0;
        return time;
    }

    HostedPlugin plugin{PluginKind::instrument};
    MOK_SCRUB_GRANULATOR& stream = plugin.system().stream();
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    std::string edits;
    Heard heard;
    StageView view;
    StageHands hands{context, view};
    FrameTime time;
};

TEST_F(Stage, AFingerScrubsWhereItIsOnWhatIsShown) {
    view.zoom(0.0, 0.5, 10.0); // the first half
    hands.pressed(5, 0.5, 0.25, 1.0, false);
    EXPECT_NEAR(scan(), 0.25, 1e-4);
    EXPECT_TRUE(stream.scrubArea.isHeld());
    hands.pressed(7, 0.9, 0.5, 1.1, false);
    hands.dragged(7, 0.9, 0.75, 1.2);
    EXPECT_NEAR(scan(), 0.25, 1e-4); // the second finger moves only what listens
    EXPECT_EQ(heard.last.y, 0.75);
    hands.dragged(5, 1.0, 0.25, 1.3);
    EXPECT_NEAR(scan(), 0.5, 1e-4);
    ASSERT_TRUE(hands.scrubbing());
    EXPECT_EQ(hands.scrubbing()->x, 1.0);
    hands.released(7, 1.4);
    hands.released(5, 1.5);
    EXPECT_EQ(heard.text, "(1(2-2-1)2)1");
    EXPECT_FALSE(stream.scrubArea.isHeld());
    EXPECT_FALSE(hands.scrubbing());
}

TEST_F(Stage, PansWithShiftOnlyWhereItIsZoomedIn) {
    hands.pressed(1, 0.5, 0.5, 1.0, true);
    EXPECT_TRUE(stream.scrubArea.isHeld()); // there is nowhere to go
    hands.released(1, 1.1);
    const double before = scan();
    hands.wheel(0.5, 5.0, 10.0);
    const double first = view.first();
    hands.pressed(1, 0.5, 0.5, 2.0, true);
    hands.dragged(1, 0.75, 0.5, 2.1);
    EXPECT_NEAR(view.first(), first - 0.25 * view.span(), 1e-9);
    hands.released(1, 2.2);
    EXPECT_EQ(scan(), before);
    hands.resetZoom();
    EXPECT_TRUE(view.isWhole());
}

TEST_F(Stage, HandlesMoveTheRegionAsOneEdit) {
    hands.handlePressed(RegionEdge::start, 0.01); // beside the edge: no jump
    hands.handleDragged(RegionEdge::start, 0.01);
    EXPECT_EQ(stream.regionStart(), 0.0f);
    hands.handleDragged(RegionEdge::start, 0.26);
    EXPECT_NEAR(stream.regionStart(), 0.25f, 1e-5f);
    EXPECT_TRUE(hands.isHeld(RegionEdge::start));
    hands.handleReleased(RegionEdge::start);
    hands.handleReleased(RegionEdge::start);
    hands.nudge(RegionEdge::end, -10.0);
    EXPECT_NEAR(stream.regionEnd(), 0.95f, 1e-5f);
    hands.setEdge(RegionEdge::end, -3.0); // held to the sound; the scan then runs backwards
    EXPECT_EQ(stream.regionEnd(), 0.0f);
    hands.setEdge(RegionEdge::end, std::nan(""));
    EXPECT_EQ(stream.regionEnd(), 0.0f);
    EXPECT_EQ(edits, "(Region start)(Region end)(Region end)(Region end)");
}

TEST_F(Stage, ShowsTheStreamsGrainsAndScan) {
    StageReader reader(source);
    { const StageReader another(source); } // of a window that opened and closed
    plugin.set(ControlId::playStop, 1.0f);
    source.asMain([&](AudioUnitViewController&) {
        stream.setDisplayed(ControlId::length, 500.0f);
        stream.setDisplayed(ControlId::rndLength, 0.0f);
        stream.setDisplayed(ControlId::density, 20.0f);
        stream.setDisplayed(ControlId::pitch, 7.0f);
        stream.setDisplayed(ControlId::jittering, 100.0f);
    });
    for (int i = 0; i < 120; ++i) {
        for (int blocks = i % 3 == 0 ? 1 : 2; blocks > 0; --blocks) plugin.render(); // 60 a second
        readFrameOf(source, next());
    }
    const StageContents& shown = reader.contents();
    EXPECT_TRUE(shown.isPlaying);
    EXPECT_EQ(shown.sound, stream.waveForm().fileSound());
    EXPECT_NEAR(shown.scan, scan(), 0.005);
    EXPECT_NEAR(shown.jitter * shown.seconds, 0.1, 1e-6);
    const auto grains = reader.grains().sounding();
    EXPECT_NEAR(static_cast<double>(grains.size()), stream.engine().soundingGrains(), 1.0);
    for (const ShownGrain& grain : grains) EXPECT_NEAR(grain.semitones, 7.0f, 1e-3f);
    source.asMain([&](AudioUnitViewController& all) {
        stream.stopAtOnce();
        reader.read(all, next());
    });
    EXPECT_TRUE(reader.grains().sounding().empty());
}

TEST_F(Stage, AMarkGrowsWhileAFingerRestsAndStandsWhileItHolds) {
    HoldMark mark;
    StageReader reader(source);
    const auto frames = [&](int count, bool grows = true) {
        for (int i = 0; i < count; ++i) {
            plugin.render(i % 3 == 0 ? 1 : 2); // a frame and two thirds of ten milliseconds
            readFrameOf(source, next());
            const auto& finger = hands.scrubbing();
            mark.advance(finger, finger ? view.at(finger->x) : 0.0, reader.contents().scan,
                         reader.contents().staysHeld, time.elapsed, grows);
        }
        return mark.shown();
    };
    frames(1); // time passes by blocks from the first one on
    hands.pressed(1, 0.5, 0.25, 0.0, false);
    EXPECT_FALSE(frames(6)); // as long as a click
    const auto young = frames(10), old = frames(8);
    ASSERT_TRUE(young && old);
    EXPECT_LT(young->growth, old->growth);
    EXPECT_FALSE(old->stands);
    EXPECT_NEAR(old->scan, 0.5, 1e-3);
    EXPECT_EQ(old->y, 0.25);
    EXPECT_TRUE(frames(12)->stands);
    hands.dragged(1, 0.75, 0.5, 0.6); // goes along
    frames(1);
    hands.released(1, 0.7);
    const auto left = frames(6);
    ASSERT_TRUE(left);
    EXPECT_TRUE(left->stands);
    EXPECT_NEAR(left->scan, 0.75, 1e-3);
    EXPECT_EQ(left->y, 0.5);
    hands.pressed(2, 0.5, 0.5, 1.0, false); // another touch ends it
    EXPECT_FALSE(frames(1));
    hands.dragged(2, 0.6, 0.5, 1.1);
    EXPECT_FALSE(frames(40)); // a finger that moved holds nothing
    hands.released(2, 2.0);
    hands.pressed(2, 0.5, 0.5, 3.0, false);
    frames(1);
    EXPECT_EQ(frames(12, false)->growth, 1.0); // still where motion is reduced
    EXPECT_TRUE(frames(30)->stands);
    hands.cancelled(2, 4.0); // leaves nothing held
    EXPECT_FALSE(frames(1));
    EXPECT_FALSE(stream.scrubArea.isHeld());
}

} // namespace
} // namespace zephyra
