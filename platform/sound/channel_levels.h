// ChannelLevels: offset, power and peak of a sound's channels and of their mean.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zephyra {

/// Of one signal, relative to full scale at 1. Plain data.
struct SignalLevel {
    double sum = 0.0, squares = 0.0, peak = 0.0;
    std::uint64_t samples = 0;

    void add(double sample) noexcept;
    double mean() const noexcept; ///< the DC offset; 0 for no samples
    double rms() const noexcept;
};

/// Below this nobody hears anything: half a step of 16 bits comes to -90.3 dB.
inline constexpr double kSilence = 3.1622776601683795e-5; // -90 dB

/// A DC offset of full scale: "0.00 %", "-12.50 %". Any thread but RENDER.
std::string offsetText(double mean);

/// Measures a sound block by block, one thread at a time, any but RENDER.
class ChannelLevels {
public:
    /// The next frames of a sound with so many channels, always the same number, from 1 up.
    void add(const float* interleaved, std::uint32_t frames, std::uint32_t channels);

    const std::vector<SignalLevel>& channels() const noexcept { return channels_; }
    /// Of the mean of the channels, frame by frame.
    const SignalLevel& mean() const noexcept { return mean_; }

    /// By how much the power of the mean lies below that of the channels, in dB, 0 up, beyond the
    /// 10 log10(channels) by which that of independent channels does; none where the channels are
    /// silent. Infinite where they cancel altogether.
    double cancelledDecibels() const noexcept;

private:
    std::vector<SignalLevel> channels_;
    SignalLevel mean_;
};

} // namespace zephyra
