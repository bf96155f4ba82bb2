#include "bench/sound_sources.h"

#include "tests/support/test_sounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

constexpr double kTurn = 2.0 * std::numbers::pi;

std::uint64_t framesOf(double seconds, float rate) {
    return static_cast<std::uint64_t>(std::llround(seconds * double{rate}));
}

/// A resonance of two poles.
struct Formant {
    double y1 = 0.0, y2 = 0.0;

    double operator()(double x, double hertz, double bandwidth, double rate) {
        const double radius = std::exp(-std::numbers::pi * bandwidth / rate);
        const double y = x * (1.0 - radius) + 2.0 * radius * std::cos(kTurn * hertz / rate) * y1 -
                         radius * radius * y2;
        y2 = y1;
        y1 = y;
        return y;
    }
};

/// Three formants in Hz of a, i, u, o and e.
constexpr double kVowels[][3] = {
    {730, 1090, 2440}, {270, 2290, 3010}, {300, 870, 2240}, {570, 840, 2410}, {530, 1840, 2480}};

/// Where the syllables begin and end, in seconds of two.
constexpr std::array<std::array<double, 2>, 6> kSyllables = {
    {{0.05, 0.28}, {0.31, 0.47}, {0.62, 0.95}, {1.00, 1.11}, {1.30, 1.58}, {1.62, 1.90}}};

/// 0 outside of begin and end, and up and down within a time between them. All in seconds.
double fadedGain(double at, double begin, double end, double within) {
    if (at <= begin || at >= end) return 0.0;
    return std::sin(kTurn / 4.0 * std::min({1.0, (at - begin) / within, (end - at) / within}));
}

double syllableGain(double at) {
    double gain = 0.0;
    for (const auto& [begin, end] : kSyllables) gain += fadedGain(at, begin, end, 0.015);
    return gain;
}

} // namespace

std::unique_ptr<mokSample> sineSound(double seconds, float rate, double hertz) {
    auto sound = std::make_unique<mokSample>(framesOf(seconds, rate), rate);
    for (std::uint64_t n = 0; n < sound->size; ++n) {
        const double at = static_cast<double>(n) / double{rate}, cycles = at * hertz;
        sound->data[n] = static_cast<float>(0.5 * fadedGain(at, 0.0, seconds, 0.01) *
                                            std::sin(kTurn * (cycles - std::floor(cycles))));
    }
    sound->writeGuardPoint();
    return sound;
}

std::unique_ptr<mokSample> noiseSound(double seconds, float rate, std::uint32_t seed) {
    auto sound = noiseSample(framesOf(seconds, rate), rate, seed);
    sound->rescale(0.5f);
    return sound;
}

std::unique_ptr<mokSample> speechSound(double seconds, float rate, double transpose) {
    auto sound = std::make_unique<mokSample>(framesOf(seconds, rate), rate);
    std::array<Formant, 3> formants;
    double pulse = 0.0;
    for (std::uint64_t n = 0; n < sound->size; ++n) {
        const double at = static_cast<double>(n) / double{rate};
        pulse += transpose * (120.0 + 30.0 * std::sin(kTurn * 0.7 * at)) / double{rate};
        const double excitation = pulse >= 1.0 ? 1.0 : 0.0;
        pulse -= std::floor(pulse);
        const double place = 4.0 * at; // a vowel every quarter of a second
        const auto now = static_cast<std::size_t>(place) % std::size(kVowels);
        const double share = 0.5 - 0.5 * std::cos(kTurn / 2.0 * (place - std::floor(place)));
        double y = excitation;
        for (std::size_t f = 0; f < formants.size(); ++f)
            y = formants[f](y,
                            transpose * std::lerp(kVowels[now][f],
                                                  kVowels[(now + 1) % std::size(kVowels)][f],
                                                  share),
                            80.0 + 40.0 * static_cast<double>(f), double{rate});
        sound->data[n] = static_cast<float>(y * syllableGain(std::fmod(at, 2.0)));
    }
    const float peak = sound->getPeak();
    if (peak > 0) sound->rescale(0.5f / peak);
    sound->writeGuardPoint();
    return sound;
}

std::shared_ptr<const mokSample> soundOf(SoundKind kind, int variant) {
    constexpr double kSeconds = 2.0;
    constexpr float kRate = 48000.0f;
    // Whole cycles between grains that start 50 times a second, at every pitch: they add up.
    if (kind == SoundKind::sine) return sineSound(kSeconds, kRate, variant == 0 ? 400.0 : 600.0);
    if (kind == SoundKind::noise)
        return noiseSound(kSeconds, kRate, 7 + static_cast<std::uint32_t>(variant));
    return speechSound(kSeconds, kRate, variant == 0 ? 1.0 : 1.2);
}

} // namespace zephyra
