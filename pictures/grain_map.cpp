#include "pictures/grain_map.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zephyra {

namespace {

constexpr int kMostTraversals = 24; // a long grain in a tiny source is one solid band anyway

/// A step from a to b over the ends of the scanned part.
void addWrappedStep(std::vector<ScanLine>& lines, const GrainMap& map, const ScanMark& a,
                    const ScanMark& b) {
    const bool up = b.position < a.position; // it left at the one end and came back at the other
    const double left = up ? map.high : map.low, entered = up ? map.low : map.high;
    const double before = std::abs(left - a.position), after = std::abs(b.position - entered);
    const double share = before + after > 0 ? before / (before + after) : 0.5;
    const double seconds = a.seconds + share * (b.seconds - a.seconds);
    lines.push_back({a, {seconds, left}});
    lines.push_back({{seconds, entered}, b});
}

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

std::vector<ScanLine> scanLines(const GrainMap& map) {
    std::vector<ScanLine> lines;
    for (std::size_t i = 1; i < map.scan.size(); ++i) {
        const ScanMark &a = map.scan[i - 1], &b = map.scan[i];
        if (std::abs(b.position - a.position) <= (map.high - map.low) / 2)
            lines.push_back({a, b});
        else if (map.edge == SourceEdge::wraps)
            addWrappedStep(lines, map, a, b);
    }
    return lines;
}

} // namespace zephyra
