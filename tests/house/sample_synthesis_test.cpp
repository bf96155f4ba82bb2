// The parts that the built-in samples are made of.
#include "resources/make_samples/bird_voice.h"
#include "resources/make_samples/bowed_glass.h"
#include "resources/make_samples/curve.h"
#include "resources/make_samples/glass_strike.h"
#include "resources/make_samples/resonator.h"
#include "resources/make_samples/room.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

namespace zephyra {
namespace {

/// Amplitude of the sine at hz in the frames from first on.
double amplitudeAt(const Signal& sound, double hz, std::size_t first = 0) {
    std::complex<double> sum = 0.0;
    for (std::size_t i = first; i < sound.size(); ++i)
        sum += sound[i] * std::polar(1.0, kTwoPi * hz * timeOf(i));
    return 2.0 * std::abs(sum) / static_cast<double>(sound.size() - first);
}

double energy(const Signal& sound, double from, double to) {
    double sum = 0.0;
    for (std::size_t i = frames(from); i < frames(to); ++i) sum += sound[i] * sound[i];
    return sum;
}

TEST(Curve, passesThroughItsPointsWithoutOvershootOrJump) {
    const Curve curve({{0.0, 1.0}, {1.0, 1.0}, {1.1, 5.0}, {3.0, 4.9}, {4.0, -2.0}});
    EXPECT_DOUBLE_EQ(curve(-1.0), 1.0);
    EXPECT_DOUBLE_EQ(curve(1.1), 5.0);
    EXPECT_DOUBLE_EQ(curve(3.0), 4.9);
    EXPECT_DOUBLE_EQ(curve(9.0), -2.0);
    for (double at = 0.0; at < 4.0; at += 0.001) {
        EXPECT_LE(curve(at), 5.0) << at;
        EXPECT_GE(curve(at), -2.0) << at;
        EXPECT_NEAR(curve(at + 0.001), curve(at), 0.08) << at;
        if (at <= 1.0) {
            EXPECT_DOUBLE_EQ(curve(at), 1.0) << at;
        }
    }
}

TEST(Resonator, passesItsPitchWholeAndTheEdgesOfItsBandAtHalfPower) {
    const struct {
        double hz;
        double amplitude;
    } cases[] = {
        {1000.0, 1.0}, {951.25, std::sqrt(0.5)}, {1051.25, std::sqrt(0.5)}, {200.0, 0.021}};
    for (const auto& [hz, amplitude] : cases) {
        Resonator band(1000.0, 10.0);
        Signal sound(frames(2.0));
        for (std::size_t i = 0; i < sound.size(); ++i)
            sound[i] = band(std::sin(kTwoPi * hz * timeOf(i)));
        EXPECT_NEAR(amplitudeAt(sound, hz, frames(1.0)), amplitude, 0.005) << hz << " Hz";
    }
}

TEST(Room, fallsBySixtyDecibelsInItsDecayAndIsSilentBeforeThePreDelay) {
    const Room room = {1.0, 1.2, 1.0, 0.05, 0.0};
    Signal sound(frames(2.0), 0.0);
    sound[0] = 1.0;
    addRoom(sound, room);
    EXPECT_EQ(energy(sound, 0.001, 0.05), 0.0);
    const double fall = energy(sound, 0.3, 0.5) / energy(sound, 0.9, 1.1); // half the decay
    EXPECT_NEAR(10.0 * std::log10(fall), 30.0, 2.0);
}

TEST(GlassStrike, ringsAtTheModesOfAShellAndStartsAndEndsInSilence) {
    Chance chance(1);
    const Signal tone = glassStrike({400.0, 0.002, 5.0, 1.0}, 2.0, chance);
    EXPECT_EQ(tone.front(), 0.0);
    EXPECT_EQ(tone.back(), 0.0);
    for (const double ratio : {1.0, 2.25, 4.0, 6.25}) {
        const auto around = [&](double hz) { // both halves of a beating pair lie within 0.8 Hz
            return amplitudeAt(tone, hz - 0.4) + amplitudeAt(tone, hz + 0.4);
        };
        EXPECT_GT(around(400.0 * ratio), 10.0 * around(400.0 * ratio * 1.1)) << ratio;
    }
}

TEST(BowedGlass, followsThePressureAndPutsItsEnergyOnItsHarmonics) {
    const BowedTone tone = {220.0, Curve({{0.0, 0.0}, {0.5, 0.0}, {1.0, 1.0}}), 0.0, 0.0};
    const Timbre timbre = {{{Curve({{0.0, std::log2(660.0)}}), 0.2, 4.0}}, Curve({{0.0, 1.0}})};
    Chance chance(2);
    const Signal sound = bowedGlass(tone, timbre, 2.0, chance);
    EXPECT_EQ(energy(sound, 0.0, 0.49), 0.0);
    const auto near = [&](double hz) { // detune and drift spread a partial over a few hertz
        double sum = 0.0;
        for (double step = -4.0; step <= 4.0; step += 0.5)
            sum += std::pow(amplitudeAt(sound, hz + step), 2.0);
        return sum;
    };
    EXPECT_GT(near(220.0), 100.0 * near(330.0));
    EXPECT_GT(near(660.0), near(440.0)) << "the formant lifts the third harmonic";
}

TEST(BirdNote, glidesFromItsFirstPitchToItsLast) {
    Chance chance(3);
    const Signal note = birdNote({0.6, {1700.0, 1700.0, 2600.0, 2600.0}, 1.0}, chance);
    const auto pitch = [&](double from, double to) { // by its rising zero crossings
        int crossings = 0;
        for (std::size_t i = frames(from); i < frames(to); ++i)
            if (note[i] < 0.0 && note[i + 1] >= 0.0) ++crossings;
        return crossings / (to - from);
    };
    EXPECT_NEAR(pitch(0.05, 0.18), 1700.0, 30.0);
    EXPECT_NEAR(pitch(0.42, 0.55), 2600.0, 30.0);
    EXPECT_EQ(note.front(), 0.0);
    EXPECT_EQ(note.back(), 0.0);
}

} // namespace
} // namespace zephyra
