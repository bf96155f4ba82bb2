// What meters show of synthetic sound.
#include "screens/model/level_meter.h"
#include "screens/model/live_spectrum.h"
#include "screens/model/scope_trace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>
#include <vector>

namespace zephyra {
namespace {

constexpr double kRate = 48000.0;
constexpr FrameTime kFrame{.now = 0.0, .elapsed = 1.0 / 60.0};

/// An output that somebody watches, a 60th of a second more of it with each step.
struct Output {
    Oscilloscope oscilloscope;
    OutputLevels levels;
    WatchCount::Watcher watchers[2] = {WatchCount::Watcher(oscilloscope.watchers),
                                       WatchCount::Watcher(levels.watchers)};
    std::uint64_t played = 0;

    void play(const std::function<float(double seconds)>& sound, std::uint32_t frames = 800) {
        std::vector<float> samples(frames);
        for (float& sample : samples) sample = sound(static_cast<double>(played++) / kRate);
        AudioBuffer channels[2] = {{.mData = samples.data()}, {.mData = samples.data()}};
        const AudioBufferList list{.mNumberBuffers = 2, .mBuffers = channels};
        oscilloscope.OscilloscopeAddAudio(list, static_cast<int>(frames));
        levels.add(list, frames);
    }
};

auto sine(double hertz, double height) {
    return [=](double seconds) {
        return static_cast<float>(height * std::sin(2 * std::numbers::pi * hertz * seconds));
    };
}

float silence(double) {
    return 0.0f;
}

TEST(LevelMeter, ShowsDecibelsHoldsPeaksAndFallsToAStandstill) {
    Output output;
    LevelMeter meter;
    const auto& channel = meter.channels()[0];
    EXPECT_FALSE(meter.advance(output.levels, kFrame));
    for (int frame = 0; frame < 120; ++frame) {
        output.play(sine(1000, 0.5));
        meter.advance(output.levels, kFrame);
    }
    EXPECT_NEAR(channel.peak, -6.02, 0.05);
    EXPECT_NEAR(channel.rms, -9.03, 0.1);
    EXPECT_FALSE(channel.clipped);

    output.play([](double) { return 1.1f; }, 256);
    EXPECT_TRUE(meter.advance(output.levels, kFrame));
    EXPECT_NEAR(meter.highestPeak(), 0.83, 0.01);
    for (int frame = 0; frame < 60; ++frame) { // a second, in blocks longer than a frame
        if (frame % 6 == 0) output.play(silence, 4800);
        meter.advance(output.levels, kFrame);
    }
    EXPECT_NEAR(channel.hold, 0.83, 0.01);
    EXPECT_NEAR(channel.peak, 0.83 - LevelMeter::kPeakFall, 0.4);
    EXPECT_TRUE(channel.clipped);
    for (int frame = 0; frame < 60; ++frame)
        meter.advance(output.levels, kFrame); // the host stands
    EXPECT_LT(channel.hold, -20.0);
    meter.clear();
    EXPECT_FALSE(channel.clipped);
    EXPECT_EQ(meter.highestPeak(), LevelMeter::kFloor);
    for (int frame = 0; frame < 600; ++frame) meter.advance(output.levels, kFrame);
    EXPECT_EQ(channel, LevelMeter::Channel{});
    output.play(silence);
    EXPECT_FALSE(meter.advance(output.levels, kFrame));
}

TEST(LevelMeter, KeepsItsRmsWhileABlockIsAwaited) {
    Output output;
    LevelMeter meter;
    double least = 0.0;
    for (int frame = 0; frame < 240; ++frame) {
        if (frame % 6 == 0) output.play([](double) { return 0.5f; }, 4800);
        meter.advance(output.levels, kFrame);
        if (frame > 180) least = std::min(least, meter.channels()[1].rms);
    }
    EXPECT_NEAR(least, -6.02, 0.1);
}

TEST(ScopeTrace, StandsStillOnASteadyToneAndIsFlatInSilence) {
    for (const double hertz : {60.0, 441.3, 1234.5}) {
        SCOPED_TRACE(hertz);
        Output output;
        ScopeTrace trace;
        trace.setColumns(200);
        const auto tone = [&](double seconds) { // with a rising zero of its own in the middle
            return sine(hertz, 0.5)(seconds) - sine(2 * hertz, 0.4)(seconds);
        };
        for (int frame = 0; frame < 12; ++frame) output.play(tone);
        EXPECT_TRUE(trace.advance(output.oscilloscope, kFrame));
        const std::vector<ScopeTrace::Column> first(trace.columns().begin(), trace.columns().end());
        EXPECT_GT(first[5].high - first[5].low, 0.0f);
        for (int frame = 0; frame < 20; ++frame) {
            output.play(tone, 777);
            trace.advance(output.oscilloscope, kFrame);
            for (std::size_t c = 0; c < first.size(); ++c) { // within a frame of the sound
                const double step = 2 * std::numbers::pi * hertz / kRate * 1.5;
                ASSERT_NEAR(trace.columns()[c].high, first[c].high, step) << c;
                ASSERT_NEAR(trace.columns()[c].low, first[c].low, step) << c;
            }
        }
        for (int frame = 0; frame < 16; ++frame) trace.advance(output.oscilloscope, kFrame);
        EXPECT_EQ(trace.columns()[5], ScopeTrace::Column{}); // the host stands
        output.play(silence, 8192);
        EXPECT_FALSE(trace.advance(output.oscilloscope, kFrame));
    }
}

TEST(LiveSpectrum, ShowsATonesLevelAtItsPlaceAndFallsToAStandstill) {
    Output output;
    LiveSpectrum spectrum;
    spectrum.setColumns(363);
    EXPECT_NEAR(LiveSpectrum::placeOf(30.0), 0.0, 1e-9);
    EXPECT_NEAR(LiveSpectrum::frequencyAt(LiveSpectrum::placeOf(1000.0)), 1000.0, 1e-6);
    const double tone = kRate / LiveSpectrum::kFrames * 85; // 996 Hz, the middle of a bin
    for (int frame = 0; frame < 30; ++frame) {
        output.play(sine(tone, 0.1));
        EXPECT_TRUE(spectrum.advance(output.oscilloscope, kRate, kFrame) || frame > 20);
    }
    const auto shown = spectrum.decibels();
    const auto highest = std::max_element(shown.begin(), shown.end());
    EXPECT_NEAR(static_cast<double>(highest - shown.begin()), LiveSpectrum::placeOf(tone) * 363, 2);
    EXPECT_NEAR(*highest, -20.0, 0.1);
    EXPECT_LT(shown[50], -80.0f); // Hann's sidelobes, an octave and more away
    output.play(silence, 8192);
    spectrum.advance(output.oscilloscope, kRate, kFrame);
    EXPECT_NEAR(*highest, -20.0 - LiveSpectrum::kFall / 60.0, 0.1);
    int frames = 1;
    while (spectrum.advance(output.oscilloscope, kRate, kFrame) && frames < 1000) ++frames;
    EXPECT_NEAR(frames, 76.0 / LiveSpectrum::kFall * 60, 3);
    for (const float decibels : shown) ASSERT_EQ(decibels, LiveSpectrum::kFloor);
}

TEST(Strips, ShowNothingOfWhatCameBeforeTheyWereSwitchedOn) {
    Output output;
    ScopeTrace trace;
    LiveSpectrum spectrum;
    trace.setColumns(200);
    spectrum.setColumns(200);
    for (int frame = 0; frame < 12; ++frame) output.play(sine(1000, 0.5));
    trace.begin(output.oscilloscope);
    spectrum.begin(output.oscilloscope);
    for (int frame = 0; frame < 4; ++frame) {
        EXPECT_FALSE(trace.advance(output.oscilloscope, kFrame)) << frame;
        EXPECT_FALSE(spectrum.advance(output.oscilloscope, kRate, kFrame)) << frame;
        output.play(silence); // what was before is still in the ring
    }
    output.play(sine(1000, 0.5));
    EXPECT_TRUE(trace.advance(output.oscilloscope, kFrame));
    EXPECT_TRUE(spectrum.advance(output.oscilloscope, kRate, kFrame));
}

} // namespace
} // namespace zephyra
