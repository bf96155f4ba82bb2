#include "platform/sound/channel_levels.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zephyra {

void SignalLevel::add(double sample) noexcept {
    sum += sample;
    squares += sample * sample;
    peak = std::max(peak, std::abs(sample));
    ++samples;
}

double SignalLevel::mean() const noexcept {
    return samples == 0 ? 0.0 : sum / static_cast<double>(samples);
}

double SignalLevel::rms() const noexcept {
    return samples == 0 ? 0.0 : std::sqrt(squares / static_cast<double>(samples));
}

std::string offsetText(double mean) {
    constexpr double kLeast = 0.5e-4; // a smaller one would read -0.00
    return formatFixed(std::abs(mean) < kLeast ? 0.0 : mean * 100.0, 2) + " %";
}

void ChannelLevels::add(const float* interleaved, std::uint32_t frames, std::uint32_t channels) {
    channels_.resize(channels);
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        double sum = 0.0;
        for (SignalLevel& channel : channels_) {
            const double sample = *interleaved++;
            channel.add(sample);
            sum += sample;
        }
        mean_.add(sum / channels);
    }
}

double ChannelLevels::cancelledDecibels() const noexcept {
    double squares = 0.0;
    for (const SignalLevel& channel : channels_) squares += channel.squares;
    if (squares <= 0.0) return 0.0;
    if (mean_.squares <= 0.0) return std::numeric_limits<double>::infinity();
    const auto count = static_cast<double>(channels_.size());
    const double independent = squares / count / count;
    return std::max(10.0 * std::log10(independent / mean_.squares), 0.0);
}

} // namespace zephyra
