// The marks of a render's picture: grains, scan, the paths of controls, and how much of them is
// kept.

#include "pictures/event_labels.h"
#include "pictures/render_picture.h"
#include "platform/text/text_numbers.h"
#include "tests/support/testing.h"

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
        {0.0, 1e9, SourceEdge::wraps, 0, 24}, {0.5, 1.5, SourceEdge::ends, 0, 0}};
    for (const auto& [from, to, edge, first, last] : cases) {
        const SourceRounds rounds = roundsOf(grain(from, to), edge);
        EXPECT_EQ(rounds.first, first) << from << " to " << to;
        EXPECT_EQ(rounds.last, last) << from << " to " << to;
    }
}

/// "0-1s 0.4-0.5 ..." of lines.
std::string textOf(const std::vector<ScanLine>& lines) {
    std::string text;
    for (const auto& [from, to] : lines)
        text += formatFixed(from.seconds, 2) + "-" + formatFixed(to.seconds, 2) + "s " +
                formatFixed(from.position, 2) + "-" + formatFixed(to.position, 2) + " ";
    return text;
}

TEST(ScanWay, MotionIsALineAWrapLeavesAndEntersAndAJumpIsNeither) {
    struct Case {
        const char* what;
        std::vector<ScanRun> runs;
        const char *lines, *jumps;
    };
    const auto at = [](double seconds, double phase, double travel = 0, double drift = 0) {
        return ScanRun{seconds, 1, phase, travel, 0.2, 0.4, drift};
    };
    const Case cases[] = {
        {"up over most of its part", {at(0, 0.1, 0.8)}, "0.00-1.00s 0.24-0.56 ", ""},
        {"a wrap on the way",
         {at(0, 0.5, 2)},
         "0.00-0.25s 0.40-0.60 0.25-0.75s 0.20-0.60 "
         "0.75-1.00s 0.20-0.40 ",
         ""},
        {"down", {at(0, 0.25, -0.5)}, "0.00-0.50s 0.30-0.20 0.50-1.00s 0.60-0.50 ", ""},
        {"a wrap between runs",
         {at(0, 0.5, 0.5), at(1, 0, 0.25)},
         "0.00-1.00s 0.40-0.60 1.00-2.00s 0.20-0.30 ",
         ""},
        {"down to the end, and on",
         {at(0, 0.5, -0.5), at(1, 1, -0.25)},
         "0.00-1.00s 0.40-0.20 1.00-2.00s 0.60-0.50 ",
         ""},
        {"a small jump",
         {at(0, 0.5), at(1, 0.75)},
         "0.00-1.00s 0.40-0.40 1.00-2.00s 0.50-0.50 ",
         "1.00-1.00s 0.40-0.50 "},
        {"from end to end, standing",
         {at(0, 1), at(1, 0)},
         "0.00-1.00s 0.60-0.60 1.00-2.00s 0.20-0.20 ",
         "1.00-1.00s 0.60-0.20 "},
        {"a pause", {at(0, 0.5), at(1.5, 0)}, "0.00-1.00s 0.40-0.40 1.50-2.50s 0.20-0.20 ", ""},
        {"live input goes on",
         {at(0, 0.5, 0, 0.1), ScanRun{1, 1, 0.5, 0, 0.3, 0.4, 0.1}},
         "0.00-1.00s 0.40-0.50 1.00-2.00s 0.50-0.60 ",
         ""},
        {"another part",
         {at(0, 0.5), ScanRun{1, 1, 0.5, 0, 0.3, 0.4}},
         "0.00-1.00s 0.40-0.40 1.00-2.00s 0.50-0.50 ",
         "1.00-1.00s 0.40-0.50 "},
        {"too short for a band",
         {ScanRun{0, 0.001, 0.5, 1, 0.2, 0.4}},
         "0.00-0.00s 0.40-0.60 0.00-0.00s 0.20-0.40 ",
         ""},
        {"a part that runs backwards",
         {ScanRun{0, 1, 0.5, 1, 0.6, -0.4}},
         "0.00-0.50s 0.40-0.20 0.50-1.00s 0.60-0.40 ",
         ""}};
    for (const Case& one : cases) {
        const ScanWay way = scanWay(one.runs, 0.01);
        EXPECT_EQ(textOf(way.lines), one.lines) << one.what;
        EXPECT_EQ(textOf(way.jumps), one.jumps) << one.what;
        EXPECT_TRUE(way.bands.empty()) << one.what;
    }
    const ScanWay fast = scanWay({at(0, 0, -400)}, 0.01);
    ASSERT_EQ(fast.bands.size(), 1u) << "wraps that cannot be told apart";
    EXPECT_EQ(std::tuple(fast.bands[0].low, fast.bands[0].high, fast.lines.size()),
              std::tuple(0.2, 0.2 + 0.4, 0u));
}

TEST(ScanWay, EvenStepsAreMotionAndOneThatStandsAloneIsAJump) {
    const auto jumps = [](std::initializer_list<double> places, double seconds, double finest) {
        std::vector<ScanRun> runs;
        for (const double place : places)
            runs.push_back({static_cast<double>(runs.size()) * seconds, seconds, place, 0, 0, 1});
        return scanWay(runs, finest).jumps.size();
    };
    EXPECT_EQ(jumps({0, 0.1, 0.21, 0.3, 0.37}, 0.03, 0.01), 0u) << "ticks of an LFO";
    EXPECT_EQ(jumps({0, 0.1, 0.2, 0.3, 0.0, 0.1, 0.2, 0.3}, 0.03, 0.01), 1u) << "a saw falls";
    EXPECT_EQ(jumps({0, 0.1, 0.2, 0.3}, 0.5, 0.01), 3u) << "steps of a sequence";
    EXPECT_EQ(jumps({0, 0.1, 0.2, 0.3}, 0.5, 0.3), 0u) << "in a picture of an hour";
    EXPECT_EQ(jumps({0, 0.1, 0.2}, 0.03, 0.01), 2u) << "two alone";
    EXPECT_EQ(jumps({0, 0.3, 0.6, 0.9}, 0.03, 0.01), 3u) << "too fast for motion";
    EXPECT_EQ(jumps({0, 0.003}, 0.5, 0.01), 0u) << "too small to be seen";
    EXPECT_EQ(jumps({0, 0.1, 0.0, 0.2}, 0.03, 0.01), 3u) << "to and fro";
}

TEST(ScanWay, RunsThatGoOnAreOneAndThoseTooShortToBeSeenGiveWay) {
    std::vector<ScanRun> runs;
    for (int n = 0; n < 1000; ++n)
        addScanRun(runs, {n * 0.01, 0.01, std::fmod(n * 0.3, 1.0), 0.3, n * 0.1, 1, 0.1}, 0.001);
    ASSERT_EQ(runs.size(), 1u);
    EXPECT_NEAR(runs[0].travel, 300, 1e-9);
    EXPECT_NEAR(runs[0].drift, 100, 1e-9);
    EXPECT_NEAR(runs[0].end(), 10, 1e-9);

    addScanRun(runs, {10, 0.1, 0.0, 0.3, 100, 1, 0.1}, 0.2); // goes on, but slower
    addScanRun(runs, {10.1, 0.1, 0.7, 0.0, 0, 1}, 0.2);
    addScanRun(runs, {10.2, 0.1, 0.9, 0.0, 0, 1}, 0.15);
    ASSERT_EQ(runs.size(), 3u);
    EXPECT_EQ(std::tuple(runs[1].seconds, runs[1].phase), std::tuple(10, 0.7));
    EXPECT_NEAR(runs[1].length, 0.2, 1e-9);
}

TEST(EventLabels, NoneIsOverAnotherOrBeyondTheEndsAndNoneIsLost) {
    constexpr EventLabelRoom kRoom = {.width = 1000, .gap = 5, .rows = 4, .othersWidth = 60};
    for (const int count : {1, 4, 10, 40, 400})
        for (const double spread : {0.0, 0.1, 1.0})
            for (const double from : {0.0, 0.5, 1.0}) {
                SCOPED_TRACE(testing::Message() << count << " " << spread << " " << from);
                std::vector<EventExtent> events;
                for (int i = 0; i < count; ++i)
                    events.push_back({(from + (1 - from) * spread * i / count) * kRoom.width,
                                      40.0 + i * 37 % 150});
                std::map<std::pair<std::size_t, double>, double> ends; // by row and beginning
                std::size_t told = 0;
                for (const EventLabel& label : placeEventLabels(events, kRoom)) {
                    const double width =
                        label.others > 0 ? kRoom.othersWidth : events[label.event].width;
                    told += std::max<std::size_t>(label.others, 1);
                    EXPECT_GE(label.left, 0);
                    EXPECT_LE(label.left + width, kRoom.width);
                    EXPECT_LT(label.row, kRoom.rows);
                    ends[{label.row, label.left}] = label.left + width;
                }
                EXPECT_EQ(told, events.size());
                for (auto next = ends.begin(), last = next++; next != ends.end(); last = next++) {
                    const bool below = last->first.first < next->first.first;
                    EXPECT_TRUE(below || last->second < next->first.second);
                }
            }
    const auto single = [&](double at, double width) {
        return placeEventLabels({{at, width}}, kRoom).at(0).left;
    };
    EXPECT_EQ(single(100, 50), 105);
    EXPECT_EQ(single(945, 50), 950) << "just fits";
    EXPECT_EQ(single(946, 50), 891) << "left of its event";
    EXPECT_EQ(placeEventLabels(std::vector<EventExtent>(8, {500, 100}), kRoom).back().others, 0u)
        << "in two columns";
    const std::vector<EventExtent> chord = {{500, 90}, {500, 80}, {500, 30}, {500, 70}, {500, 60}};
    EXPECT_EQ(placeEventLabels(chord, kRoom).back().row, 2u) << "beside the shortest";
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
    EXPECT_EQ(std::tuple(path.columns[3].last, path.heightOf(0.5f)), std::tuple(20.0f, 0));
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
        picture.addScan({seconds, 0.001, n % 2 * 0.5, 0, 0, 1});
        picture.addControls(seconds, {&value, 1});
    }
    EXPECT_LE(picture.map.scan.size(), 81u) << "eight to a column";
    EXPECT_GE(picture.map.scan.size(), 70u);
    EXPECT_EQ(picture.paths[0].columns[7].first, 1.4f);
    EXPECT_EQ(picture.paths[0].columns[9].last, 2.0f);
}

} // namespace
} // namespace zephyra
