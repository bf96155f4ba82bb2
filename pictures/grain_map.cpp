#include "pictures/grain_map.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr int kMostTraversals = 24; // a long grain in a tiny source is one solid band anyway

} // namespace

double pitchRange(const GrainMap& map) {
    double most = 0;
    for (const GrainMark& grain : map.grains) most = std::max(most, std::abs(grain.semitones));
    if (most < 0.01) return 12; // nothing is transposed: an octave shows that best
    for (const double range : {1.0, 2.0, 3.0, 6.0, 12.0, 24.0, 36.0})
        if (most <= range * 1.001) return range;
    return 12 * std::ceil(most / 12);
}

SourceRounds roundsOf(const GrainMark& grain, SourceEdge edge) {
    if (edge == SourceEdge::ends) return {0, 0};
    const auto first = static_cast<int>(std::floor(std::min(grain.from, grain.to)));
    const double end = std::max(grain.from, grain.to);
    const int last = std::max(first, static_cast<int>(std::min(std::ceil(end) - 1, 1e6)));
    return {first, std::min(last, first + kMostTraversals)};
}

} // namespace zephyra
