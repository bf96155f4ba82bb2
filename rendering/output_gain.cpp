#include "rendering/output_gain.h"

#include <cmath>

namespace zephyra {

double gainFactor(const OutputGain& gain, double peak, const OutputType& type) {
    if (!gain.isAutomatic) return factorOf(gain.decibels);
    const double highest = factorOf(type.isLossy ? kHighestLossyPeak : kHighestPeak);
    return peak > highest ? highest / peak : 1.0;
}

double decibelsOf(double factor) {
    return 20 * std::log10(factor);
}

double factorOf(double decibels) {
    return std::pow(10.0, decibels / 20);
}

} // namespace zephyra
