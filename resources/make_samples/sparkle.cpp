#include "resources/make_samples/sparkle.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr double kLowestHz = 1500.0;
constexpr double kOctaves = 2.2; // up to about 7 kHz

/// One glint: quick to come, slow to go, trembling a little.
Signal glint(double hz, double length, Chance& chance) {
    Signal sound(frames(length));
    const double tremble = chance.between(5.0, 9.0);
    const double level = chance.between(0.3, 1.0) * std::pow(hz / kLowestHz, -0.5);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double t = timeOf(i);
        const double shake = 0.8 + 0.2 * std::sin(kTwoPi * tremble * t);
        sound[i] = level * shake * std::exp(-3.0 * t / length) * std::sin(kTwoPi * hz * t);
    }
    fadeEdges(sound, 0.12 * length, 0.6 * length);
    return sound;
}

} // namespace

Signal sparkle(const std::vector<double>& roots, int count, double length, Chance& chance) {
    Signal sound(frames(length), 0.0);
    for (int i = 0; i < count; ++i) {
        const std::size_t choice = chance.below(roots.size());
        const double wish = kLowestHz * std::exp2(kOctaves * chance.unit());
        const double hz = roots[choice] * std::round(wish / roots[choice]);
        const double start = chance.between(0.0, length - 0.5);
        mixInto(sound, glint(hz, chance.between(0.4, 1.8), chance), start);
    }
    return sound;
}

} // namespace zephyra
