// How much noise a grain adds to a tone.

#include "engine/grain_voice.h"
#include "tests/support/testing.h"
#include "tests/support/tone_noise.h"

namespace zephyra {
namespace {

constexpr float kRate = 44100.0f;
constexpr int kFrames = 8820;
constexpr std::uint64_t kTenMinutes = 26460000;

/// Decibels of noise in a tone, heard through a grain that starts at a frame of a sound, transposed
/// by semitones.
double grainNoise(mokSample& sound, std::uint64_t from, double semitones, double hertz = 3000) {
    const double cycles = hertz / double{kRate};
    for (std::uint64_t n = from; n < std::min(from + 5 * kFrames, sound.size); ++n)
        sound.data[n] = static_cast<float>(
            std::sin(2 * std::numbers::pi * std::remainder(cycles * double(n - from), 1.0)));
    const mokWindow envelope(64, kWindowRectangular);
    mokGrain grain(&sound, &envelope, kRate, 1);
    const auto size = static_cast<double>(sound.size);
    grain.start();
    grain.setParameters(1.0f, static_cast<float>(double{kRate} / size * std::exp2(semitones / 12)),
                        static_cast<double>(from) / size, 10.0f);
    std::vector<float> heard(kFrames);
    grain.Processing(heard.data(), kFrames);
    return toneNoise(heard, cycles * double{grain.phaseIncrement} * size);
}

TEST(GrainNoise, IsTheSameHoweverFarIntoASoundAGrainStands) {
    mokSample sound(kTenMinutes, kRate);
    EXPECT_LT(grainNoise(sound, 4096, 0), -90);
    for (double semitones : {0.0, 7.0, 24.0}) {
        const double early = grainNoise(sound, 4096, semitones);
        for (std::uint64_t from : {1ul << 21, (1ul << 24) + 1000, kTenMinutes - 5 * kFrames})
            EXPECT_NEAR(grainNoise(sound, from, semitones), early, 1) << from << ' ' << semitones;
    }
}

} // namespace
} // namespace zephyra
