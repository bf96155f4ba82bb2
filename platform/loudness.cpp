// Measures loudness by libebur128.

#include "platform/loudness.h"

#include <algorithm>
#include <cmath>
#include <ebur128.h>
#include <memory>

namespace zephyra {
namespace {

struct Ebur128Deleter {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

std::optional<double> integratedLufs(std::span<const float> samples, double sampleRate) {
    if (!(sampleRate >= 16.0 && sampleRate <= 2822400.0)) return std::nullopt; // the library's own
    const std::unique_ptr<ebur128_state, Ebur128Deleter> state(
        ebur128_init(1, static_cast<unsigned long>(std::lround(sampleRate)), EBUR128_MODE_I));
    if (!state) return std::nullopt;
    if (ebur128_add_frames_float(state.get(), samples.data(), samples.size()) != EBUR128_SUCCESS)
        return std::nullopt;
    double lufs = 0.0;
    if (ebur128_loudness_global(state.get(), &lufs) != EBUR128_SUCCESS) return std::nullopt;
    return std::isfinite(lufs) ? std::optional(lufs) : std::nullopt;
}

} // namespace

Loudness measureLoudness(std::span<const float> samples, double sampleRate) {
    float peak = 0.0f;
    for (const float sample : samples) peak = std::max(peak, std::fabs(sample));
    Loudness loudness;
    if (peak > 0.0f) loudness.peakDecibels = 20.0 * std::log10(static_cast<double>(peak));
    loudness.integratedLufs = integratedLufs(samples, sampleRate);
    return loudness;
}

} // namespace zephyra
