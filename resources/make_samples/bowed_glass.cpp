#include "resources/make_samples/bowed_glass.h"

#include "resources/make_samples/resonator.h"

#include <algorithm>
#include <cmath>
#include <complex>

namespace zephyra {

namespace {

/// Amplitude of what lies in no formant.
constexpr double kUnshaped = 0.25;

/// Harmonics end at whichever comes first: grains that are pitched up would alias what lies above.
constexpr int kHarmonicLimit = 40;
constexpr double kHighestHz = 11000.0;

/// Amplitudes are worked out this often (frames) and joined by straight lines: 1.5 ms.
constexpr std::size_t kStep = 64;

/// Several slightly detuned copies make a tone wide; cents from the pitch.
constexpr double kDetune[] = {-3.7, 0.4, 4.3};

/// How far a copy strays (cents) and a harmonic swells and fades (decibels), and how often (Hz).
constexpr double kPitchWander = 2.5;
constexpr double kPitchWanderRate = 0.7;
constexpr double kLevelWander = 7.0;
constexpr double kLevelWanderRate = 0.45;

/// Bands of the bow's noise, from the fundamental up, and how narrow they are.
constexpr int kBreathBands = 9;
constexpr double kBreathQuality = 45.0;

using Phasor = std::complex<double>;

double bend(double hz, double cents) {
    return hz * std::exp2(cents / 1200.0);
}

/// The timbre at one moment.
class Colour {
public:
    Colour(const Timbre& timbre, double time)
        : formants_(timbre.formants), tilt_(timbre.tilt(time)) {
        for (const Formant& formant : formants_) centres_.push_back(formant.hz(time));
    }

    /// Amplitude of a tone's harmonic (1 is the fundamental) that lies at hz.
    double operator()(int harmonic, double hz) const {
        double gain = kUnshaped;
        for (std::size_t i = 0; i < centres_.size(); ++i) {
            const double distance = (std::log2(hz) - centres_[i]) / formants_[i].octaves;
            gain += formants_[i].gain * std::exp(-0.5 * distance * distance);
        }
        return gain * std::pow(harmonic, -tilt_);
    }

private:
    const std::vector<Formant>& formants_;
    std::vector<double> centres_;
    double tilt_;
};

/// One detuned copy: a rotating phasor whose powers are the harmonics.
class Copy {
public:
    Copy(const BowedTone& tone, double cents, double length, Chance& chance)
        : tone_(tone), hz_(bend(tone.hz, cents)), stray_(wander(chance, kPitchWanderRate, length)),
          vibratoHz_(chance.between(4.6, 5.3)), vibratoPhase_(chance.between(0.0, kTwoPi)),
          count_(std::min(kHarmonicLimit, static_cast<int>(kHighestHz / tone.hz))) {
        for (int n = 0; n < count_; ++n) {
            swell_.push_back(wander(chance, kLevelWanderRate * chance.between(0.7, 1.5), length));
            start_.push_back(std::polar(1.0, chance.between(0.0, kTwoPi)));
        }
    }

    void addTo(Signal& sound, const Timbre& timbre) {
        std::vector<double> levels = levelsAt(timbre, 0.0);
        for (std::size_t first = 0; first < sound.size(); first += kStep) {
            const double time = timeOf(first + kStep);
            const std::vector<double> next = levelsAt(timbre, time);
            const double turn = kTwoPi * pitchAt(time) / kSampleRate;
            const std::size_t end = std::min(first + kStep, sound.size());
            for (std::size_t i = first; i < end; ++i) {
                const double way = static_cast<double>(i - first) / kStep;
                sound[i] += sumOfHarmonics(levels, next, way);
                phase_ = std::fmod(phase_ + turn, kTwoPi);
            }
            levels = next;
        }
    }

private:
    double pitchAt(double time) const {
        const double depth = tone_.vibrato * tone_.pressure(time);
        const double shake = depth * std::sin(kTwoPi * vibratoHz_ * time + vibratoPhase_);
        return bend(hz_, kPitchWander * stray_(time) + shake);
    }

    std::vector<double> levelsAt(const Timbre& timbre, double time) const {
        std::vector<double> levels;
        const double pressure = tone_.pressure(time);
        const Colour colour(timbre, time);
        for (int n = 1; n <= count_; ++n)
            levels.push_back(pressure * colour(n, n * hz_) *
                             fromDecibels(kLevelWander * swell_[n - 1](time)));
        return levels;
    }

    double sumOfHarmonics(const std::vector<double>& from, const std::vector<double>& to,
                          double way) const {
        const Phasor turn = std::polar(1.0, phase_);
        Phasor harmonic = turn;
        double sum = 0.0;
        for (int n = 0; n < count_; ++n) {
            const double level = from[n] + (to[n] - from[n]) * way;
            sum += level * (harmonic * start_[n]).imag();
            harmonic *= turn;
        }
        return sum;
    }

    const BowedTone& tone_;
    double hz_;
    Curve stray_;
    double vibratoHz_, vibratoPhase_;
    int count_;
    std::vector<Curve> swell_;
    std::vector<Phasor> start_;
    double phase_ = 0.0;
};

/// The bow's noise, heard through the glass: bands at the harmonics.
void addBreath(Signal& sound, const BowedTone& tone, const Timbre& timbre, Chance& chance) {
    for (int n = 1; n <= kBreathBands; ++n) {
        Resonator band(tone.hz * n, kBreathQuality);
        for (std::size_t first = 0; first < sound.size(); first += kStep) {
            const double time = timeOf(first);
            const double colour = Colour(timbre, time)(n, tone.hz * n);
            const double level = tone.breath * tone.pressure(time) * colour;
            const std::size_t end = std::min(first + kStep, sound.size());
            for (std::size_t i = first; i < end; ++i)
                sound[i] += band(level * std::sqrt(static_cast<double>(n)) * chance.noise());
        }
    }
}

} // namespace

Signal bowedGlass(const BowedTone& tone, const Timbre& timbre, double length, Chance& chance) {
    Signal sound(frames(length), 0.0);
    for (const double cents : kDetune) Copy(tone, cents, length, chance).addTo(sound, timbre);
    addBreath(sound, tone, timbre, chance);
    return sound;
}

} // namespace zephyra
