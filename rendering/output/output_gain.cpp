#include "rendering/output/output_gain.h"

#include "platform/text/decibels.h"

#include <algorithm>

namespace zephyra {

double gainFactor(const OutputGain& gain, const Loudness& level, const OutputType& type) {
    using enum OutputGain::Aim;
    if (gain.aim == factor) return factorOf(gain.decibels);
    const auto& measured = gain.aim == loudness ? level.integratedLufs : level.peakDecibels;
    if (!measured) return 1.0;
    if (gain.aim != clipFree) return factorOf(gain.decibels - *measured);
    const double highest = type.isLossy ? kHighestLossyPeak : kHighestPeak;
    return factorOf(std::min(highest - *measured, 0.0));
}

} // namespace zephyra
