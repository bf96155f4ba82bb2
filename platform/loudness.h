// Loudness: how loud a sound is, for people.
#pragma once

#include <optional>
#include <span>

namespace zephyra {

struct Loudness {
    /// The highest absolute sample, dB relative to 1; none for silence.
    std::optional<double> peakDecibels;
    /// Integrated loudness after EBU R 128 of the signal as a single channel, LUFS; none for
    /// silence, for less than the 0.4 s of one measuring block, and below the standard's gate.
    std::optional<double> integratedLufs;
};

/// Measures a mono signal of finite samples at sampleRate Hz. A rate below 16 or above 2822400 Hz
/// gives no integrated loudness. MAIN or WORKER.
Loudness measureLoudness(std::span<const float> samples, double sampleRate);

} // namespace zephyra
