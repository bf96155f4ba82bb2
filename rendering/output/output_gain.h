// OutputGain: how a finished render is turned up or down.
#pragma once

#include "platform/sound/loudness.h"
#include "rendering/output/output_type.h"

namespace zephyra {

/// Plain data. What it acts on is the file alone: the unit's own levels, states and presets know
/// nothing of it.
struct OutputGain {
    enum class Aim {
        factor,   ///< by so many decibels
        clipFree, ///< down as far as it takes for the file not to clip, never up
        peak,     ///< to a highest magnitude of so many decibels
        loudness, ///< to an integrated loudness (EBU R 128) of so many LUFS
    };
    Aim aim = Aim::factor;
    double decibels = 0; ///< of no meaning for clipFree

    /// The whole sound has to be known before its first sample can go on.
    bool waits() const noexcept { return aim != Aim::factor; }
};

/// The largest magnitude that an automatic gain leaves, in decibels: just below the highest value
/// of 16 bits, and where coding loses something room for what it adds.
inline constexpr double kHighestPeak = -0.1, kHighestLossyPeak = -1.0;
inline constexpr double kLowestGain = -120, kHighestGain = 60; ///< decibels
inline constexpr double kLowestLoudness = -70; ///< LUFS, where the standard's gate is

/// The factor by which a render of this level is to be multiplied for type; 1 where it has none
/// that could be aimed at (silence; for a loudness also less than 0.4 s). Any thread.
double gainFactor(const OutputGain& gain, const Loudness& level, const OutputType& type);

} // namespace zephyra
