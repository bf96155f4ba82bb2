#include "engine/steady_level.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kHanningEnergy = 0.375;
constexpr double kMost = 20.0;
constexpr double kSmallestDeviation = 1e-4; // below it the mean of the intervals is the interval

/// An interval is 1 / (density (1 + u)), u uniform in ±deviation: on average this many times
/// 1 / density.
double meanInterval(double deviation) ZEPHYRA_NONBLOCKING {
    if (deviation < kSmallestDeviation) return 1.0;
    const double most = std::min(deviation, 0.999);
    return std::log((1.0 + most) / (1.0 - most)) / (2.0 * most);
}

/// Of L = 1 - w u' and R = 1 - w u, u uniform in 0..1 and u' what it lacks of 1.
double channelEnergy(double width) ZEPHYRA_NONBLOCKING {
    return 1.0 - width + width * width / 3.0;
}

} // namespace

float steadyLevel(const CloudShape& shape) ZEPHYRA_NONBLOCKING {
    const double scheduled = double{shape.length} * double{shape.density} /
                             meanInterval(std::abs(double{shape.rndDensity}));
    const double overlap = std::clamp(scheduled, 1.0, std::max(1.0, double(shape.voices)));
    const double energy =
        overlap * double{shape.windowEnergy} * channelEnergy(double{shape.width}) / kHanningEnergy;
    if (!(energy > 0.0)) return 1.0f;
    return static_cast<float>(std::clamp(1.0 / std::sqrt(energy), 1.0 / kMost, kMost));
}

} // namespace zephyra
