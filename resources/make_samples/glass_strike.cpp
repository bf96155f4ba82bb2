#include "resources/make_samples/glass_strike.h"

#include "resources/make_samples/resonator.h"

#include <cmath>
#include <complex>

namespace zephyra {

namespace {

/// Modes of a thin shell bend it into 2, 3, 4 ... waves around the rim; its frequencies follow the
/// square of that number (Fletcher and Rossing, "The Physics of Musical Instruments").
constexpr int kFirstMode = 2;
constexpr int kLastMode = 9;

/// A glass is never quite round, so every mode rings at two frequencies that beat: Hz between them.
constexpr double kSlowestBeat = 0.25;
constexpr double kFastestBeat = 1.6;

/// Knock of the mallet on the rim.
constexpr double kKnockSeconds = 0.03;
constexpr double kKnockHz = 2600.0;
constexpr double kKnockQuality = 1.4;

/// Adds one mode that decays from level by 60 dB in decay seconds.
void addMode(Signal& tone, double hz, double level, double decay, double phase) {
    const double fall = std::log(1000.0) / (decay * kSampleRate);
    const std::complex<double> turn = std::polar(std::exp(-fall), kTwoPi * hz / kSampleRate);
    std::complex<double> place = std::polar(level, phase);
    for (double& sample : tone) {
        sample += place.imag();
        place *= turn;
    }
}

Signal knock(Chance& chance) {
    Signal noise(frames(kKnockSeconds));
    Resonator body(kKnockHz, kKnockQuality);
    for (double& sample : noise) sample = body(chance.noise());
    fadeEdges(noise, 0.001, kKnockSeconds - 0.001);
    return noise;
}

} // namespace

Signal glassStrike(const Strike& strike, double length, Chance& chance) {
    Signal tone(frames(length), 0.0);
    for (int mode = kFirstMode; mode <= kLastMode; ++mode) {
        const double ratio = mode * mode / static_cast<double>(kFirstMode * kFirstMode);
        const double hz = strike.hz * ratio;
        if (hz > 0.4 * kSampleRate) break;
        const double level = 0.35 * std::pow(ratio, -0.25 - 1.3 * (1.0 - strike.hardness));
        const double decay = strike.decay * std::pow(ratio, -0.45);
        const double beat = chance.between(kSlowestBeat, kFastestBeat);
        addMode(tone, hz - beat / 2.0, level, decay, chance.between(0.0, kTwoPi));
        addMode(tone, hz + beat / 2.0, 0.7 * level, decay, chance.between(0.0, kTwoPi));
    }
    Signal hit = knock(chance);
    for (double& sample : hit) sample *= 0.9 * strike.hardness;
    mixInto(tone, hit, 0.0);
    fadeEdges(tone, strike.attack, 0.05);
    return tone;
}

} // namespace zephyra
