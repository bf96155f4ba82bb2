// LoudnessMeter: how loud a sound is, for people.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace zephyra {

struct Loudness {
    /// The highest absolute sample of any channel, dB relative to 1; none for silence.
    std::optional<double> peakDecibels;
    /// Integrated loudness after EBU R 128, LUFS; none for silence, for less than the 0.4 s of one
    /// measuring block, and below the standard's gate.
    std::optional<double> integratedLufs;
};

/// Measures a sound block by block. One channel counts as mono, two as left and right, more as the
/// library's order for surround. MAIN or WORKER, one thread at a time.
class LoudnessMeter {
public:
    /// channels from 1 up, sampleRate in Hz. What the standard's meter does not take (more than 64
    /// channels, a rate below 16 or above 2822400 Hz) gives a peak and no loudness.
    LoudnessMeter(std::uint32_t channels, double sampleRate);
    ~LoudnessMeter();
    LoudnessMeter(const LoudnessMeter&) = delete;
    LoudnessMeter& operator=(const LoudnessMeter&) = delete;

    /// The next frames, interleaved; all finite.
    void add(const float* interleaved, std::uint32_t frames);

    /// Of everything added so far.
    Loudness measure() const;

private:
    struct Meter;
    std::unique_ptr<Meter> meter_; // null where the standard's meter does not apply
    std::uint32_t channels_;
    float peak_ = 0.0f;
};

} // namespace zephyra
