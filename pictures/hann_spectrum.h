// HannSpectrum: the power spectrum of a windowed stretch of a stereo signal.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace zephyra {

/// Any thread but RENDER, one at a time.
class HannSpectrum {
public:
    /// frames: of a stretch, an even number.
    explicit HannSpectrum(std::size_t frames);
    ~HannSpectrum();
    HannSpectrum(const HannSpectrum&) = delete;
    HannSpectrum& operator=(const HannSpectrum&) = delete;

    std::size_t frames() const noexcept { return window_.size(); }

    /// One channel's stretch in the order of time, in two parts as a ring has it; together they are
    /// frames() long.
    struct Stretch {
        std::span<const float> older, newer = {};
    };
    /// Takes the mean power of both channels.
    void run(const Stretch& left, const Stretch& right);

    /// By bins of rate / frames() Hz each, from 0 Hz; 1 for a sine of full scale in both channels
    /// in its bin.
    std::span<const float> power() const noexcept { return power_; }
    /// The power from bin low to bin high, which may be fractions: between bins it is interpolated,
    /// of several bins the strongest counts.
    float strongest(double low, double high) const noexcept;

private:
    struct Plan;

    void add(const Stretch& channel);

    std::vector<float> window_, power_;
    std::unique_ptr<Plan> plan_;
};

} // namespace zephyra
