#include "rendering/output/output_gain.h"

#include "platform/text/decibels.h"

namespace zephyra {

double gainFactor(const OutputGain& gain, double peak, const OutputType& type) {
    if (!gain.isAutomatic) return factorOf(gain.decibels);
    const double highest = factorOf(type.isLossy ? kHighestLossyPeak : kHighestPeak);
    return peak > highest ? highest / peak : 1.0;
}

} // namespace zephyra
