// What the pictures' numbers are made of: waveforms, spectra, scales and names.

#include "cli/progress_bar.h"
#include "pictures/cairo/grain_map.h"
#include "pictures/cairo/paths_lane.h"
#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/spectrogram_lane.h"
#include "pictures/cairo/waveform_lane.h"
#include "pictures/spectrum_columns.h"
#include "pictures/waveform_columns.h"
#include "platform/text/nearest_name.h"
#include "platform/text/text_numbers.h"
#include "rendering/picture_recorder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace zephyra {
namespace {

TEST(WaveformColumns, EveryFrameFallsOnItsColumn) {
    WaveformColumns columns(6, 3);
    const float samples[] = {1, -2, 0, 4, 5, 5, 99}; // the last is beyond the length
    columns.add(samples, 4);
    columns.add(samples + 4, 3);
    const auto seen = columns.columns();
    EXPECT_EQ(seen[0].low, -2);
    EXPECT_EQ(seen[0].high, 1);
    EXPECT_EQ(seen[1].low, 0);
    EXPECT_EQ(seen[1].high, 4);
    EXPECT_EQ(seen[2].rms(), 5);

    WaveformColumns sparse(2, 4);
    sparse.add(samples, 2);
    EXPECT_EQ(sparse.columns()[1].high, 1) << "an empty column shows its predecessor";
    EXPECT_EQ(sparse.columns()[3].low, -2);
}

TEST(SpectrumColumns, ASineOfFullScaleShowsAtZeroDecibelsInItsRowWhileItLasts) {
    for (const double rate : {44100.0, 96000.0})
        for (const double hertz : {200.0, 1000.0, 8000.0}) {
            SCOPED_TRACE(hertz);
            const auto frames = static_cast<std::size_t>(rate);
            std::vector<float> sine(frames);
            for (std::size_t n = 0; n < frames / 2; ++n)
                sine[n] = static_cast<float>(
                    std::sin(2 * std::numbers::pi * hertz * static_cast<double>(n) / rate));
            SpectrumColumns spectrum(frames, rate, 20, 200);
            spectrum.add(sine.data(), sine.data(), 1000);
            spectrum.add(sine.data() + 1000, sine.data() + 1000, frames - 1000);
            spectrum.finish();

            std::size_t strongest = 0;
            for (std::size_t row = 0; row < 200; ++row)
                if (spectrum.decibels(5, row) > spectrum.decibels(5, strongest)) strongest = row;
            EXPECT_NEAR(spectrum.decibels(5, strongest), 0.0,
                        1.5); // between bins up to 1.4 dB less
            const double at =
                std::log(hertz / SpectrumColumns::kLowestFrequency) /
                std::log(spectrum.highestFrequency() / SpectrumColumns::kLowestFrequency) * 200;
            EXPECT_NEAR(static_cast<double>(strongest) + 0.5, at, hertz < 500 ? 3 : 1.5);
            EXPECT_LT(spectrum.decibels(15, strongest), -150) << "silence follows";
        }
}

/// A plan of one second at 44100 Hz, and one block of it.
RenderPlan planFor(SourceUse use) {
    return {.sampleRate = 44100,
            .playFrames = 44100,
            .frames = 44100,
            .blockFrames = 10000,
            .seed = 1,
            .envelope = 0,
            .use = use};
}

TEST(PictureRecorder, GrainsStandWhereTheyReadInTheSourceAtTheirPitch) {
    const SoundFileInfo source{.format = "", .channels = 1, .sampleRate = 44100, .frames = 88200};
    std::vector<float> silence(10000);
    // In a source of 2 s, 1 Hz is an octave up; in the live buffer of 10 s, 0.1 Hz is its own
    // pitch.
    const GrainRecord loaded{20500, 0.25f, 1.0f, 0.1f, 1, 0.5f, false};
    const GrainRecord live{20500, (441000 - 5 - 8820) / 441000.0f, 0.1f, 0.1f, 1, 0.5f, true};
    const auto recorded = [&](SourceUse use, const GrainRecord& grain) {
        PictureRecorder recorder(planFor(use), source);
        recorder.add({.firstFrame = 20000,
                      .frames = 10000,
                      .left = silence.data(),
                      .right = silence.data(),
                      .grains = {&grain, 1},
                      .scanPosition = grain.position,
                      .amplitude = 0.5f});
        return recorder.map();
    };
    const GrainMark first = recorded(SourceUse::loaded, loaded).grains.at(0);
    EXPECT_NEAR(first.start, 20500 / 44100.0, 1e-9);
    EXPECT_NEAR(first.from, 0.25, 1e-6);
    EXPECT_NEAR(first.to, 0.35, 1e-6);
    EXPECT_NEAR(first.semitones, 12, 1e-3);
    EXPECT_EQ(first.level, 0.5);
    EXPECT_FALSE(first.dropped);

    // The first step of the block ends with frame 24096, its last one with frame 30000.
    const GrainMap map = recorded(SourceUse::live, live);
    EXPECT_NEAR(map.grains.at(0).from, (24096 - 1 - 8820) / 88200.0, 1e-5);
    EXPECT_NEAR(map.grains.at(0).to - map.grains.at(0).from, 4410 / 88200.0, 1e-5);
    EXPECT_NEAR(map.grains.at(0).semitones, 0, 1e-3);
    EXPECT_TRUE(map.grains.at(0).dropped);
    EXPECT_NEAR(map.scan.at(0).position, (30000 - 1 - 8820) / 88200.0, 1e-5);
}

/// The red, green and blue of a canvas at a pixel, as 0xRRGGBB.
std::uint32_t pixel(const Canvas& canvas, int x, int y) {
    cairo_surface_t* const surface = cairo_get_target(canvas.context());
    cairo_surface_flush(surface);
    const unsigned char* const row =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    return row[4 * x] | row[4 * x + 1] << 8 | row[4 * x + 2] << 16;
}

TEST(GrainMap, AGrainIsDrawnFromItsStartToItsEndAndOnOverTheSourcesEdge) {
    Canvas canvas(120, 120);
    const Box box = {10, 10, 100, 100};
    const std::uint32_t empty = pixel(canvas, 50, 50);
    GrainMap map;
    map.seconds = map.playSeconds = 1;
    map.grains = {{.start = 0,
                   .length = 1,
                   .from = 0.5,
                   .to = 1.5,
                   .semitones = 0,
                   .level = 1,
                   .dropped = false}};
    drawGrainMap(canvas, box, map);
    EXPECT_NE(pixel(canvas, 35, 35), empty)
        << "a quarter of the time, three quarters of the source";
    EXPECT_NE(pixel(canvas, 85, 84), empty) << "on from the source's start";
    EXPECT_EQ(pixel(canvas, 85, 35), empty);
    EXPECT_EQ(pixel(canvas, 35, 84), empty);
}

TEST(Canvas, TextThatIsNotUtf8IsShownAndDoesNotStopTheDrawing) {
    Canvas canvas(40, 40);
    for (const char* wrong : {"\xFF", "\xC3", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80",
                              "\xF4\x90\x80\x80", "\xE2\x82", "\x80\xF0\x9F"}) {
        EXPECT_EQ(canvas.textWidth(wrong),
                  canvas.textWidth(std::string(std::string_view(wrong).size(), '?')));
        canvas.text(0, 10, wrong);
    }
    EXPECT_LT(canvas.textWidth("\xF0\x9D\x84\x9E\xE2\x99\xAA\xC3\xA4"),
              canvas.textWidth("?????????"));
    const std::uint32_t empty = pixel(canvas, 30, 30);
    canvas.fill({20, 20, 20, 20}, theme::title);
    EXPECT_NE(pixel(canvas, 30, 30), empty);
}

TEST(WaveformLane, LoudnessFillsTheLaneAndWhatExceedsFullScaleIsMarked) {
    std::vector<WaveformColumns::Column> columns(100);
    columns[20] = {.low = -0.5f, .high = 0.5f, .squares = 0, .frames = 1};
    columns[60] = {.low = -1.1f, .high = 0.5f, .squares = 0, .frames = 1};
    const Box box = {10, 10, 100, 100};
    Canvas along(120, 120), upright(120, 120);
    const std::uint32_t empty = pixel(along, 5, 5);
    drawWaveform(along, box, columns, theme::output, 1.0);
    drawWaveform(upright, box, columns, theme::output, 1.0, WaveformDirection::upwards);
    EXPECT_NE(pixel(along, 30, 37), empty);
    EXPECT_EQ(pixel(along, 30, 33), empty) << "half of full scale ends here";
    EXPECT_EQ(pixel(along, 31, 37), empty);
    EXPECT_NE(pixel(along, 70, 107), empty);
    EXPECT_NE(pixel(along, 70, 37), pixel(along, 30, 37)) << "too loud";
    EXPECT_NE(pixel(upright, 37, 89), empty) << "column 20 from below";
    EXPECT_EQ(pixel(upright, 37, 30), empty);
}

TEST(SpectrogramLane, LowFrequenciesAreAtTheBottomAndTheLoudestIsBrightest) {
    std::vector<float> sine(44100);
    for (std::size_t n = 0; n < sine.size(); ++n)
        sine[n] = static_cast<float>(
            std::sin(2 * std::numbers::pi * 100 * static_cast<double>(n) / 44100));
    SpectrumColumns spectrum(sine.size(), 44100, 50, 100);
    spectrum.add(sine.data(), sine.data(), sine.size());
    spectrum.finish();
    const LevelRange range = levelRange(spectrum);
    EXPECT_EQ(range.high, 0); // up from just below full scale to the next ten
    EXPECT_EQ(range.low, -80);
    Canvas canvas(70, 120);
    drawSpectrogram(canvas, {10, 10, 50, 100}, spectrum, range);
    const auto brightness = [&canvas](int y) {
        const std::uint32_t colour = pixel(canvas, 35, y);
        return (colour & 0xFF) + (colour >> 8 & 0xFF) + (colour >> 16 & 0xFF);
    };
    const int at = 109 - static_cast<int>(100 * std::log(100 / 30.0) / std::log(20000 / 30.0));
    EXPECT_GT(brightness(at), 500u);
    EXPECT_LT(brightness(30), 100u);
    EXPECT_LT(brightness(70), 200u);
}

TEST(PathsLane, APathRunsFromItsLowestValueAtTheBottomToItsHighestAtTheTop) {
    ControlPaths paths({{ControlId::pan, "CC 1"}}, 1.0, 100);
    for (const auto& [seconds, value] : {std::pair(0.0, -0.25f), {0.5, -0.25f}, {0.51, 0.75f}})
        paths.add(seconds, {&value, 1});
    Canvas canvas(340, 120);
    const std::uint32_t panel = [&] {
        canvas.fill({0, 0, 1, 1}, theme::panel);
        return pixel(canvas, 0, 0);
    }();
    drawPaths(canvas, {110, 10, 100, 100}, 10, paths.all(), {});
    EXPECT_NE(pixel(canvas, 130, 106), panel);
    EXPECT_EQ(pixel(canvas, 130, 14), panel);
    EXPECT_NE(pixel(canvas, 190, 14), panel) << "it stays where it was seen last";
    EXPECT_EQ(pixel(canvas, 190, 106), panel);
}

TEST(GrainMap, ColoursReachToTheNextRoundRangeOfThePitches) {
    GrainMap map;
    EXPECT_EQ(pitchRange(map), 12);
    for (const auto& [pitch, range] : {std::pair(-0.5, 1), {5.9, 6}, {-24.0, 24}, {40.0, 48}}) {
        map.grains = {{.start = 0,
                       .length = 1,
                       .from = 0,
                       .to = 1,
                       .semitones = pitch,
                       .level = 1,
                       .dropped = false}};
        EXPECT_EQ(pitchRange(map), range) << pitch;
    }
}

TEST(PictureAxes, TicksStandAtRoundPlaces) {
    const auto labels = [](const std::vector<Tick>& ticks) {
        std::string text;
        for (const Tick& tick : ticks) text += tick.label + "@" + formatFixed(tick.at, 2) + " ";
        return text;
    };
    EXPECT_EQ(labels(roundTicks(-1, 1, 4)), "-1.0@0.00 -0.5@0.25 0.0@0.50 0.5@0.75 1.0@1.00 ");
    EXPECT_EQ(labels(timeTicks(5, 5)), "0@0.00 1@0.20 2@0.40 3@0.60 4@0.80 5@1.00 ");
    EXPECT_EQ(labels(timeTicks(120, 4)), "0:00@0.00 0:30@0.25 1:00@0.50 1:30@0.75 2:00@1.00 ");
    EXPECT_EQ(labels(frequencyTicks(100, 1000)), "100@0.00 200@0.30 500@0.70 1k@1.00 ");
    EXPECT_EQ(timeTicks(1e-3, 10).size(), 11u);
}

TEST(NearestName, FindsWhatWasMeant) {
    EXPECT_EQ(plainName("Dry/Wet"), "drywet");
    EXPECT_EQ(plainName(" rnd_PITCH 2"), "rndpitch2");
    EXPECT_EQ(editDistance("kitten", "sitting"), 3u);
    EXPECT_EQ(editDistance("ptich", "pitch"), 1u) << "two swapped neighbours";
    EXPECT_EQ(editDistance("", "abc"), 3u);
    const std::string_view names[] = {"Pan", "Pitch", "Rnd Pitch"};
    EXPECT_EQ(nearestName("PTICH", names), "Pitch");
    EXPECT_EQ(nearestName("rndpich", names), "Rnd Pitch");
}

TEST(TextNumbers, AreReadWholeAndWrittenShort) {
    EXPECT_EQ(parseNumber("-0.5"), -0.5);
    EXPECT_EQ(parseNumber("+3"), 3.0);
    for (const char* wrong : {"", "+", "+-3", "1,5", "1.5x", " 1", "nan", "inf", "1e999", "0x10"})
        EXPECT_FALSE(parseNumber(wrong)) << wrong;
    EXPECT_FALSE(parseWhole("-1"));
    EXPECT_FALSE(parseWhole("18446744073709551616"));
    EXPECT_EQ(formatNumber(0.341f), "0.341");
    EXPECT_EQ(formatDuration(59.96), "1:00 min");
    EXPECT_EQ(formatDuration(3723), "1:02:03 h");
}

TEST(ProgressBar, ShowsShareAndTimeLeftOnceThereIsSomethingToJudgeBy) {
    EXPECT_EQ(progressLine("Work", 0.25, 10.0),
              "Work [########........................]  25 %  0:30 left");
    EXPECT_EQ(progressLine("Work", 0, 1), "Work [................................]   0 %");
    EXPECT_EQ(progressLine("Work", 2, 1),
              "Work [################################] 100 %  0:00 left");
}

} // namespace
} // namespace zephyra
