// toneNoise: how much of a sound is not the sine that it should be.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

namespace zephyra {

/// Decibels of what is left when the nearest sine of that frequency is taken away, against the
/// sine.
inline double toneNoise(const std::vector<float>& sound, double cyclesPerSample) {
    const auto at = [&](std::size_t n) {
        return 2 * std::numbers::pi * std::remainder(cyclesPerSample * static_cast<double>(n), 1.0);
    };
    double cc = 0, ss = 0, cs = 0, xc = 0, xs = 0;
    for (std::size_t n = 0; n < sound.size(); ++n) {
        const double c = std::cos(at(n)), s = std::sin(at(n)), x = double{sound[n]};
        cc += c * c, ss += s * s, cs += c * s, xc += x * c, xs += x * s;
    }
    const double a = (xc * ss - xs * cs) / (cc * ss - cs * cs);
    const double b = (xs * cc - xc * cs) / (cc * ss - cs * cs);
    double tone = 0, rest = 0;
    for (std::size_t n = 0; n < sound.size(); ++n) {
        const double sine = a * std::cos(at(n)) + b * std::sin(at(n));
        tone += sine * sine;
        rest += (double{sound[n]} - sine) * (double{sound[n]} - sine);
    }
    return 10 * std::log10(rest / tone);
}

} // namespace zephyra
