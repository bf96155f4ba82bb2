// What the stage shows: columns of a sound, grains as they sound, pitch, and times.
#include "screens/model/stage/grain_clock.h"
#include "screens/model/stage/grain_cloud.h"
#include "screens/model/stage/live_wave.h"
#include "screens/model/stage/pitch_axis.h"
#include "screens/model/stage/ruler_scale.h"
#include "screens/model/stage/stage_view.h"
#include "screens/model/stage/wave_pyramid.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/test_sounds.h"

#include <gtest/gtest.h>

#include <set>

namespace zephyra {
namespace {

TEST(WavePyramid, ShowsWhatTheFramesAreAtEveryZoom) {
    const std::shared_ptr<const mokSample> sound = noiseSample(3'000'000, 44100.0f);
    WavePyramid pyramid;
    pyramid.setSound(sound);
    int slices = 0;
    for (; !pyramid.isComplete(); ++slices) EXPECT_TRUE(pyramid.build(0.0));
    EXPECT_GT(slices, 100); // none takes long
    EXPECT_FALSE(pyramid.build(1.0));
    struct Row {
        double first, span;
        std::size_t columns;
        std::int64_t reach; ///< frames that a column may take in from beside it
    };
    for (const auto& [first, span, count, reach] :
         {Row{0.0, 1.0, 10, 8192}, Row{0.0, 1.0, 100, 256}, Row{0.2, 0.01, 100, 1},
          Row{0.7, 0.0001, 100, 1}}) {
        std::vector<WaveColumn> columns(count);
        pyramid.show(first, first + span, columns);
        const double step = span * 3e6 / static_cast<double>(count);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            const double from = first * 3e6 + static_cast<double>(i) * step;
            const auto begin = sound->getPtr() + static_cast<std::uint64_t>(from + 1e-6);
            const auto end = sound->getPtr() + static_cast<std::uint64_t>(from + step);
            if (begin >= end) continue;
            EXPECT_LE(columns[i].low, *std::min_element(begin, end)) << first << ' ' << i;
            EXPECT_GE(columns[i].high, *std::max_element(begin, end)) << first << ' ' << i;
            EXPECT_LE(columns[i].high,
                      *std::max_element(begin - std::min(reach, begin - sound->getPtr()),
                                        std::min(end + reach + 1, sound->getPtr() + sound->size)));
            if (end - begin > 500) {
                EXPECT_NEAR(columns[i].rms, std::sqrt(1.0 / 3.0), 0.06);
            }
        }
    }
    std::vector<WaveColumn> beyond(4);
    pyramid.show(1.0, 2.0, beyond);
    EXPECT_EQ(beyond[2], WaveColumn{});
}

TEST(StageView, ZoomsAroundThePointerAndKeepsAFewMilliseconds) {
    StageView view;
    view.zoom(0.25, 0.5, 10.0);
    EXPECT_DOUBLE_EQ(view.at(0.25), 0.25);
    EXPECT_DOUBLE_EQ(view.span(), 0.5);
    for (int i = 0; i < 100; ++i) view.zoom(1.0, 0.8, 10.0);
    EXPECT_DOUBLE_EQ(view.span() * 10.0, StageView::kLeastSeconds);
    EXPECT_DOUBLE_EQ(view.last(), 0.625);
    view.moveTo(7.0);
    EXPECT_DOUBLE_EQ(view.last(), 1.0);
    for (int i = 0; i < 100; ++i) view.zoom(0.0, 1.5, 10.0);
    EXPECT_EQ(view, StageView{});
}

TEST(PitchAxis, HoldsWhatSoundsAndNarrowsLater) {
    PitchAxis axis;
    axis.advance(3.0, 0.0, true);
    EXPECT_EQ(axis.range(), 7.0); // at once, the first time
    EXPECT_LT(axis.heightOf(7.0), 0.05);
    axis.advance(11.0, 0.016, true);
    EXPECT_EQ(axis.target(), 12);
    EXPECT_LT(axis.range(), 12.0); // glides
    axis.advance(11.0, 1.0, true);
    EXPECT_EQ(axis.range(), 12.0);
    EXPECT_EQ(axis.labels().back(), 12);
    for (double past = 0.0; past < PitchAxis::kNarrowsAfter - 0.1; past += 0.1)
        EXPECT_FALSE(axis.advance(1.0, 0.1, false)) << past;
    for (int i = 0; i < 3; ++i) axis.advance(1.0, 0.1, false);
    EXPECT_EQ(axis.range(), 7.0); // jumps where nothing may glide
    axis.advance(36.0, 0.1, false);
    EXPECT_EQ(axis.range(), PitchAxis::kMostRange);
}

TEST(GrainClock, GoesEvenlyWhateverTheBlock) {
    for (const std::uint64_t block : {64u, 480u, 4096u}) {
        GrainClock clock;
        std::uint64_t rendered = 0;
        double before = 0.0;
        for (int i = 1; i < 600; ++i) {
            while (static_cast<double>(rendered) < i * 800.0) rendered += block;
            const double frame = clock.advance(rendered, 1.0 / 60.0, 48000.0);
            if (i > 60) {
                EXPECT_NEAR(frame - before, 800.0, 240.0) << block << ' ' << i;
                EXPECT_NEAR(frame, static_cast<double>(rendered),
                            1.5 * static_cast<double>(block) + 800.0);
            }
            before = frame;
        }
        for (int i = 0; i < 20; ++i) clock.advance(rendered, 1.0 / 60.0, 48000.0);
        EXPECT_EQ(clock.frame(), static_cast<double>(rendered)); // nothing is rendered
    }
}

constexpr GrainSource kTenSeconds{.seconds = 10.0};

GrainRecord record(float position, double semitones, float length, std::uint64_t frame = 0) {
    return {.frame = frame,
            .position = position,
            .rate = static_cast<float>(0.1 * std::pow(2.0, semitones / 12.0)),
            .length = length,
            .gainL = 1.0f,
            .gainR = 0.25f,
            .dropped = false};
}

TEST(GrainCloud, TellsOfEveryGrainWhatItDoesNow) {
    GrainCloud cloud;
    const std::vector<float> rise{0.0f, 0.25f, 0.5f, 0.75f, 1.0f};
    const auto at = [&](double seconds, double elapsed, bool fades = true) {
        cloud.advance(seconds * 48000.0, elapsed, 48000.0, kTenSeconds, rise, fades);
    };
    cloud.add(record(0.5f, 12.0, 2.0f, 48000), kTenSeconds, {});
    GrainRecord lost = record(0.5f, 0.0, 2.0f);
    lost.dropped = true;
    cloud.add(lost, kTenSeconds, {});
    EXPECT_EQ(cloud.dropped(), 1u);
    at(0.5, 0.5);
    EXPECT_TRUE(cloud.sounding().empty()); // not heard yet
    at(2.0, 1.5);
    ASSERT_EQ(cloud.sounding().size(), 1u);
    const ShownGrain grain = cloud.sounding()[0];
    EXPECT_NEAR(grain.semitones, 12.0f, 1e-4f);
    EXPECT_NEAR(grain.to, 0.9, 1e-6); // 2 s at twice the speed
    EXPECT_NEAR(grain.head, 0.7, 1e-6);
    EXPECT_NEAR(grain.through, 0.5, 1e-6);
    EXPECT_EQ(grain.envelope, 0.5f);
    EXPECT_EQ(grain.left, 1.0f);
    EXPECT_EQ(grain.right, 0.25f);
    at(3.1, 1.1);
    EXPECT_TRUE(cloud.sounding().empty());
    ASSERT_EQ(cloud.ended().size(), 1u);
    at(4.0, 0.9);
    EXPECT_NEAR(cloud.ended()[0].endedFor, 0.9, 1e-9);
    at(4.4, 0.4);
    EXPECT_TRUE(cloud.ended().empty());

    cloud.add(record(0.5f, 0.0, 1.0f, 48000 * 5), kTenSeconds, {});
    at(5.5, 1.0);
    cloud.endAll();
    EXPECT_EQ(cloud.ended().size(), 1u);
    at(5.6, 0.1, false); // without fading lines
    EXPECT_TRUE(cloud.ended().empty());
}

TEST(GrainCloud, GrainsOfLiveInputGoLeftWithIt) {
    GrainCloud cloud;
    const GrainSource live{.seconds = 10.0, .driftPerFrame = 0.1 / 48000.0};
    cloud.add(record(0.5f, 0.0, 1.0f), live, {});
    const auto at = [&](double seconds) {
        cloud.advance(seconds * 48000.0, 0.5, 48000.0, live, {}, true);
    };
    at(0.0);
    at(0.5);
    EXPECT_NEAR(cloud.sounding()[0].from, 0.45, 1e-6);
    EXPECT_NEAR(cloud.sounding()[0].head, 0.5, 1e-6); // it reads as fast as the sound goes
    at(1.0);
    at(1.5);
    ASSERT_EQ(cloud.ended().size(), 1u);
    EXPECT_NEAR(cloud.ended()[0].from, 0.35, 1e-6);
}

TEST(GrainCloud, StacksGrainsThatWouldCoverEachOther) {
    GrainCloud cloud;
    const BarSize bar{.semitones = 0.5, .source = 0.02, .most = 3.1};
    for (int i = 0; i < 12; ++i) cloud.add(record(0.5f, 0.0, 0.084f), kTenSeconds, bar);
    cloud.add(record(0.9f, 0.0, 0.084f), kTenSeconds, bar); // elsewhere
    cloud.add(record(0.5f, 9.0, 0.084f), kTenSeconds, bar); // higher
    cloud.advance(10.0, 0.1, 48000.0, kTenSeconds, {}, true);
    ASSERT_EQ(cloud.sounding().size(), 14u);
    std::set<int> lanes;
    for (const ShownGrain& grain : cloud.sounding().first(12)) {
        lanes.insert(grain.lane);
        EXPECT_LE(std::abs(grain.lane), 6); // the stage has no room for more
    }
    EXPECT_EQ(lanes.size(), 12u);
    EXPECT_EQ(cloud.sounding()[0].lane, 0);
    EXPECT_EQ(cloud.sounding()[12].lane, 0);
    EXPECT_EQ(cloud.sounding()[13].lane, 0);
    for (int i = 0; i < 5000; ++i) cloud.add(record(0.5f, 0.0, 0.084f), kTenSeconds, bar);
    cloud.advance(10.0, 0.1, 48000.0, kTenSeconds, {}, true);
    EXPECT_EQ(cloud.sounding().size(), GrainCloud::kMostSounding);
    EXPECT_EQ(cloud.ended().size(), GrainCloud::kMostEnded);
}

TEST(LiveWave, ScrollsWithWhatComesIn) {
    HostedPlugin plugin(PluginKind::effect); // plays its input
    WaveForm& wave = plugin.system().stream().waveForm();
    LiveWave live;
    std::vector<WaveColumn> columns(100); // of 4410 frames each
    std::size_t loud = 0;
    for (int block = 0; block < 1300; ++block) { // more than the buffer holds
        const float level = block % 100 < 50 ? 0.5f : 0.0f;
        std::fill(plugin.input.begin(), plugin.input.end(), level);
        plugin.render();
        const auto held = plugin.main();
        EXPECT_TRUE(live.follow(wave, 0.01));
        if (block < 1000) continue;
        live.show(0.0, 1.0, columns);
        const std::size_t now = static_cast<std::size_t>(std::count_if(
            columns.begin(), columns.end(), [](const WaveColumn& of) { return of.high > 0.1f; }));
        EXPECT_NEAR(static_cast<double>(now), 50.0, 13.0) << block;
        // The last but one stands 4410 to 8820 frames back, and up to a column beside that.
        if (block % 100 > 30 && block % 100 < 50) {
            EXPECT_GT(columns[98].high, 0.1f) << block;
        } else if (block % 100 > 80) {
            EXPECT_EQ(columns[98].high, 0.0f) << block;
        }
        loud += now;
    }
    EXPECT_GT(loud, 0u);
    std::fill(plugin.input.begin(), plugin.input.end(), 0.0f);
    plugin.render(1000); // more than a buffer that nobody saw: a window was hidden
    const auto held = plugin.main();
    for (double elapsed = 10.0; live.follow(wave, elapsed);) elapsed = 0.0;
    live.show(0.0, 1.0, columns);
    for (const WaveColumn& column : columns) ASSERT_EQ(column.high, 0.0f);
}

TEST(RulerScale, MarksRoundTimes) {
    const auto labels = [](double first, double last, double width, bool sparse, bool live) {
        std::string all;
        for (const RulerTick& tick : rulerTicks(first, last, width, sparse, live))
            all += tick.label + "|";
        return all;
    };
    EXPECT_EQ(labels(0.0, 12.0, 1040, false, false), "0|1|2|3|4|5|6|7|8|9|10|11|12|");
    EXPECT_EQ(labels(0.0, 12.0, 756, true, false), "0||2||4||6||8||10||12|");
    EXPECT_EQ(labels(1.0, 1.02, 300, false, false), "1.000|1.005|1.010|1.015|1.020|");
    EXPECT_EQ(labels(3540.0, 3600.0, 300, false, false), "59:00|59:15|59:30|59:45|60:00|");
    EXPECT_EQ(labels(0.0, 4.5, 300, false, true), "\u22124|\u22123|\u22122|\u22121||");
    struct Row {
        double seconds, step;
        const char* text;
    };
    for (const Row& row :
         {Row{6.4, 0.01, "6.40 s"}, Row{-1.2, 0.01, "\u22121.20 s"}, Row{66.4, 0.01, "1:06.4"},
          Row{0.12345, 0.0001, "0.1235 s"}, Row{0.0, 1.0, "0.00 s"}, Row{59.994, 0.01, "59.99 s"},
          Row{59.996, 0.01, "1:00.0"}, Row{-119.98, 0.01, "\u22122:00.0"},
          Row{-1e-4, 0.01, "0.00 s"}})
        EXPECT_EQ(timeText(row.seconds, row.step), row.text);
}

} // namespace
} // namespace zephyra
