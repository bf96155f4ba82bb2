// How much noise a grain adds to a tone, and what is left of one that is pitched beyond hearing.

#include "engine/grain_voice.h"
#include "tests/support/testing.h"
#include "tests/support/tone_noise.h"

#include <algorithm>

namespace zephyra {
namespace {

using enum GrainQuality;

constexpr float kRate = 44100.0f;
constexpr int kFrames = 8820;
constexpr std::uint64_t kTenMinutes = 26460000;

/// A tone through a grain that starts at a frame of a sound.
struct GrainTone {
    std::vector<float> heard = std::vector<float>(kFrames);
    double cycles; ///< a sample, as heard

    GrainTone(mokSample& sound, std::uint64_t from, double semitones,
              GrainQuality quality = classic, double hertz = 3000) {
        const double turn = hertz / double{kRate};
        const std::uint64_t end = std::min(from + 9 * kFrames, sound.size);
        for (std::uint64_t n = from - 1024; n < end; ++n)
            sound.data[n] = static_cast<float>(
                std::sin(2 * std::numbers::pi * std::remainder(turn * double(n), 1.0)));
        const mokWindow envelope(64, kWindowRectangular);
        mokGrain grain(&sound, &envelope, kRate, 1);
        const auto size = static_cast<double>(sound.size);
        const auto own = static_cast<float>(double{kRate} / size * std::exp2(semitones / 12));
        grain.start();
        grain.setParameters(1.0f, own, static_cast<double>(from) / size, 10.0f);
        grain.setTaps(GrainTapSet::of(quality));
        grain.Processing(heard.data(), kFrames);
        cycles = turn * double{grain.phaseIncrement} * size;
    }

    double noise() const { return toneNoise(heard, cycles); }
    /// Decibels against the tone in the sound.
    double level() const {
        double sum = 0;
        for (const float x : heard) sum += double{x} * double{x};
        return 10 * std::log10(2 * sum / kFrames);
    }
};

TEST(GrainNoise, IsTheSameHoweverFarIntoASoundAGrainStands) {
    mokSample sound(kTenMinutes, kRate);
    EXPECT_LT(GrainTone(sound, 4096, 0).noise(), -90);
    for (const double semitones : {0.0, 7.0, 24.0}) {
        const double early = GrainTone(sound, 4096, semitones).noise();
        for (std::uint64_t from : {1ul << 21, (1ul << 24) + 1000, kTenMinutes - 5 * kFrames})
            EXPECT_NEAR(GrainTone(sound, from, semitones).noise(), early, 1)
                << from << ' ' << semitones;
    }
}

TEST(GrainNoise, IsSmallInFineAndBestGrains) {
    mokSample sound(kTenMinutes, kRate);
    const struct {
        GrainQuality quality;
        double semitones, hertz, most;
    } rows[] = {{fine, 7, 3000, -75},  {fine, -7, 3000, -75},  {fine, 0, 3000, -90},
                {fine, 7, 10000, -55}, {best, 0, 3000, -95},   {best, 7, 3000, -95},
                {best, 7, 12000, -90}, {best, -7, 15000, -90}, {best, 24, 4500, -90}};
    for (const auto& row : rows)
        for (std::uint64_t from : {4096ul, (1ul << 24) + 1000}) {
            const GrainTone tone(sound, from, row.semitones, row.quality, row.hertz);
            EXPECT_LT(tone.noise(), row.most) << row.semitones << ' ' << row.hertz << ' ' << from;
        }
}

TEST(GrainNoise, DoesNotFoldFromBeyondHearingInBestGrains) {
    mokSample sound(100000, kRate);
    for (const double semitones : {7.0, 12.5, 23.7, 24.0, 36.0})
        for (const double above : {1.1, 1.3, 1.45, 2.0, 3.0}) {
            const double hertz = double{kRate} / 2 / std::exp2(semitones / 12) * above;
            if (hertz > 22000) continue;
            const GrainTone tone(sound, 4096, semitones, best, hertz);
            EXPECT_LT(tone.level(), -90) << semitones << ' ' << hertz;
        }
}

} // namespace
} // namespace zephyra
