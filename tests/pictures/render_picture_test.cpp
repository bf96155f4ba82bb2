// The marks of a render's picture: grains, scan, the paths of controls, and how much of them is
// kept.

#include "pictures/render_picture.h"

#include <gtest/gtest.h>
#include <utility>

namespace zephyra {
namespace {

GrainMark grain(double from, double to, double semitones = 0) {
    GrainMark mark{};
    mark.length = mark.level = 1;
    mark.from = from, mark.to = to, mark.semitones = semitones;
    return mark;
}

TEST(GrainMap, AGrainGoesOnOverTheSourcesEdgeWhereReadingDoes) {
    const std::tuple<double, double, SourceEdge, int, int> cases[] = {
        {0.2, 0.4, SourceEdge::wraps, 0, 0},  {0.5, 1.5, SourceEdge::wraps, 0, 1},
        {0.5, 1.0, SourceEdge::wraps, 0, 0},  {0.1, -0.5, SourceEdge::wraps, -1, 0},
        {0.0, 1e9, SourceEdge::wraps, 0, 24}, {0.5, 1.5, SourceEdge::ends, 0, 0},
    };
    for (const auto& [from, to, edge, first, last] : cases) {
        const SourceRounds rounds = roundsOf(grain(from, to), edge);
        EXPECT_EQ(rounds.first, first) << from << " to " << to;
        EXPECT_EQ(rounds.last, last) << from << " to " << to;
    }
}

TEST(GrainMap, TheScanLeavesItsPartAtOneEndAndComesBackAtTheOther) {
    GrainMap map;
    map.low = 0.2;
    map.high = 0.6;
    map.scan = {{0, 0.4}, {1, 0.5}, {2, 0.35}, {3, 0.5}};
    EXPECT_EQ(scanLines(map).size(), 3u) << "steps of less than half of the part are plain";

    map.scan = {{1, 0.57}, {2, 0.21}};
    const auto up = scanLines(map);
    ASSERT_EQ(up.size(), 2u);
    EXPECT_EQ(up[0].to.position, 0.6);
    EXPECT_EQ(up[1].from.position, 0.2);
    EXPECT_NEAR(up[0].to.seconds, 1.75, 1e-9) << "three of four parts of the step";
    EXPECT_EQ(up[0].to.seconds, up[1].from.seconds);

    std::swap(map.scan[0].position, map.scan[1].position);
    EXPECT_EQ(scanLines(map).at(0).to.position, 0.2) << "backwards it leaves at the lower end";
    map.edge = SourceEdge::ends;
    EXPECT_TRUE(scanLines(map).empty()) << "a gap";
}

TEST(GrainMap, ColoursReachToTheNextRoundRangeOfThePitches) {
    GrainMap map;
    EXPECT_EQ(pitchRange(map), 12);
    for (const auto& [pitch, range] : {std::pair(-0.5, 1), {5.9, 6}, {-24.0, 24}, {40.0, 48}}) {
        map.grains = {grain(0, 1, pitch)};
        EXPECT_EQ(pitchRange(map), range) << pitch;
    }
}

TEST(ControlPath, KeepsWhatWasSeenInEachColumnAndStandsBetweenItsExtremes) {
    ControlPath path("Density", "CC 1", 4);
    EXPECT_EQ(path.heightOf(0), 0.5) << "nothing was seen";
    for (const auto& [share, value] :
         {std::pair(0.0, 300.0f), {0.05, 0.5f}, {0.1, 400.0f}, {0.15, 9.0f}, {1.0, 20.0f}})
        path.add(share, value);
    const auto& begin = path.columns[0];
    EXPECT_EQ(std::tuple(begin.first, begin.low, begin.high, begin.last),
              std::tuple(300.0f, 0.5f, 400.0f, 9.0f));
    EXPECT_EQ(path.columns[1].count + path.columns[2].count, 0u);
    EXPECT_EQ(path.columns[3].last, 20.0f);
    EXPECT_EQ(path.heightOf(0.5f), 0);
    EXPECT_EQ(path.heightOf(400.0f), 1);
    EXPECT_NEAR(path.heightOf(100.375f), 0.25, 1e-6);

    ControlPath negative("Pan", "LFO", 1);
    for (const float value : {-0.75f, -0.25f}) negative.add(0.5, value);
    EXPECT_EQ(negative.all.high, -0.25f) << "what was never seen, zero, is no extreme";
    EXPECT_EQ(negative.heightOf(-0.25f), 1);
}

TEST(RenderPicture, KeepsNoMoreThanItsGridShowsAndEveryControlAtItsTime) {
    RenderPicture picture(
        {.sourceFrames = 22050, .sourceRate = 44100, .frames = 88200, .sampleRate = 44100},
        {.source = 5, .time = 10, .frequencies = 3});
    EXPECT_EQ(picture.sourceSeconds, 0.5);
    EXPECT_EQ(levelRange(picture.spectrum).high, 0) << "silence is shown below full scale";
    picture.paths.assign(1, ControlPath("Pan", "LFO", 10));
    for (int n = 0; n <= 2000; ++n) {
        const double seconds = n / 1000.0;
        const auto value = static_cast<float>(seconds);
        picture.addScan({seconds, 0.5});
        picture.addControls(seconds, {&value, 1});
    }
    EXPECT_LE(picture.map.scan.size(), 81u) << "eight to a column";
    EXPECT_GE(picture.map.scan.size(), 70u);
    EXPECT_EQ(picture.paths[0].columns[7].first, 1.4f);
    EXPECT_EQ(picture.paths[0].columns[9].last, 2.0f);
}

} // namespace
} // namespace zephyra
