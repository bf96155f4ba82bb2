// OutputGain: how a finished render is turned up or down.
#pragma once

#include "rendering/output/output_type.h"

namespace zephyra {

/// Plain data. What it acts on is the file alone: the unit's own levels, states and presets know
/// nothing of it.
struct OutputGain {
    bool isAutomatic = false; ///< down as far as it takes for the file not to clip, never up
    double decibels = 0;      ///< otherwise
};

/// The largest magnitude that an automatic gain leaves, in decibels: just below the highest value
/// of 16 bits, and where coding loses something room for what it adds.
inline constexpr double kHighestPeak = -0.1, kHighestLossyPeak = -1.0;
inline constexpr double kLowestGain = -120, kHighestGain = 60; ///< decibels

/// The factor by which a render of this peak is to be multiplied for type. Any thread.
double gainFactor(const OutputGain& gain, double peak, const OutputType& type);

} // namespace zephyra
