#include "screens/model/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace zephyra::palette {

namespace {

constexpr double kRange = 24.0; // semitones, either way
constexpr std::array kPitchScale{hex(0xE23D6D), hex(0xF4665A), hex(0xFF9B54), hex(0xFFE3A3),
                                 hex(0x6FE0B0), hex(0x3FB6E8), hex(0x7C7BFF)};

Color mix(Color a, Color b, float share) {
    const auto between = [share](float from, float to) { return from + (to - from) * share; };
    return {between(a.red, b.red), between(a.green, b.green), between(a.blue, b.blue),
            between(a.alpha, b.alpha)};
}

double linear(float component) {
    const double c = component;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double luminance(Color c) {
    return 0.2126 * linear(c.red) + 0.7152 * linear(c.green) + 0.0722 * linear(c.blue);
}

} // namespace

Color pitch(double semitones) {
    const double place = (std::clamp(semitones, -kRange, kRange) + kRange) / (2 * kRange) *
                         static_cast<double>(kPitchScale.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(place), kPitchScale.size() - 2);
    return mix(kPitchScale[below], kPitchScale[below + 1],
               static_cast<float>(place - static_cast<double>(below)));
}

double contrast(Color a, Color b) {
    const double one = luminance(a) + 0.05, two = luminance(b) + 0.05;
    return std::max(one, two) / std::min(one, two);
}

Color blend(Color under, Color over) {
    Color mixed = mix(under, over, over.alpha);
    mixed.alpha = 1.0f;
    return mixed;
}

} // namespace zephyra::palette
