#include "resources/make_samples/bird_voice.h"

#include "resources/make_samples/curve.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

/// A whistle is nearly a pure tone; overtones grow with its strength.
constexpr double kSecondHarmonic = 0.07;
constexpr double kThirdHarmonic = 0.025;

/// Breath follows the pitch: noise of this bandwidth (Hz) around the tone, and its level.
constexpr double kBreathHz = 140.0;
constexpr double kBreathLevel = 0.10;

/// No throat holds a pitch still: semitones to either side, and how often a second.
constexpr double kStray = 0.12;
constexpr double kStrayRate = 14.0;

constexpr double kRaspHz = 170.0;
constexpr double kSecondLevel = 0.45;

Curve pitchPath(const std::array<double, 4>& hz) {
    std::vector<Curve::Point> points;
    for (std::size_t i = 0; i < hz.size(); ++i)
        points.push_back({static_cast<double>(i) / 3.0, std::log2(hz[i])});
    return Curve(std::move(points));
}

/// Strength over a note from 0 to 1: it swells, leans on its first half and dies away.
Curve swell(Chance& chance) {
    const double peak = chance.between(0.25, 0.5);
    return Curve({{0.0, 0.3}, {peak, 1.0}, {0.8, chance.between(0.5, 0.8)}, {1.0, 0.2}});
}

/// One side of the syrinx.
class Syrinx {
public:
    explicit Syrinx(Chance& chance) : chance_(chance) {}

    /// The next sample at a pitch (Hz) and strength (0 to 1).
    double sing(double hz, double strength) {
        phase_ = std::fmod(phase_ + kTwoPi * hz / kSampleRate, kTwoPi);
        const double slowness = kTwoPi * kBreathHz / kSampleRate;
        rough_ += slowness * (chance_.noise() - rough_);
        breath_ += slowness * (rough_ - breath_);
        const double tone = std::sin(phase_) + strength * kSecondHarmonic * std::sin(2.0 * phase_) +
                            strength * kThirdHarmonic * std::sin(3.0 * phase_);
        return strength * (tone + kBreathLevel / kSmoothedNoise * breath_ * std::cos(phase_));
    }

private:
    /// What the two smoothings leave of white noise, roughly, so that kBreathLevel is a level.
    static constexpr double kSmoothedNoise = 0.06;

    Chance& chance_;
    double phase_ = 0.0;
    double rough_ = 0.0;
    double breath_ = 0.0;
};

} // namespace

Signal birdNote(const BirdNote& note, Chance& chance) {
    const Curve pitch = pitchPath(note.hz);
    const Curve strength = swell(chance);
    const Curve stray = wander(chance, kStrayRate, note.length);
    Syrinx left(chance);
    Syrinx right(chance);
    Signal sound(frames(note.length));
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double time = timeOf(i);
        const double place = time / note.length;
        const double semitones =
            kStray * stray(time) - note.trill * std::cos(kTwoPi * note.trillHz * time);
        const double hz = std::exp2(pitch(place) + semitones / 12.0);
        const double cut = 0.5 * note.rasp * (1.0 - std::cos(kTwoPi * kRaspHz * time));
        const double level = note.level * strength(place) * (1.0 - cut);
        sound[i] = left.sing(hz, level);
        if (note.second > 0.0) sound[i] += kSecondLevel * right.sing(hz * note.second, level);
    }
    fadeEdges(sound, std::min(0.03, 0.3 * note.length), std::min(0.06, 0.4 * note.length));
    return sound;
}

} // namespace zephyra
