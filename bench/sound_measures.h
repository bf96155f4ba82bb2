// rms, mean, decibels: what the tables of sound_figures read from what was played.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace zephyra {

/// Of an empty span 0.
inline double mean(std::span<const float> samples) {
    double sum = 0.0;
    for (const float sample : samples) sum += double{sample};
    return samples.empty() ? 0.0 : sum / static_cast<double>(samples.size());
}
inline double rms(std::span<const float> samples) {
    double sum = 0.0;
    for (const float sample : samples) sum += double{sample} * double{sample};
    return samples.empty() ? 0.0 : std::sqrt(sum / static_cast<double>(samples.size()));
}
/// Of an amplitude; -200 for silence.
inline double decibels(double amplitude) {
    return 20.0 * std::log10(std::max(amplitude, 1e-10));
}

} // namespace zephyra
