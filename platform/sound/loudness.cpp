// Measures loudness by libebur128.

#include "platform/sound/loudness.h"

#include "platform/text/decibels.h"

#include <algorithm>
#include <cmath>
#include <ebur128.h>

namespace zephyra {

namespace {
constexpr double kLowestRate = 16.0, kHighestRate = 2822400.0; // Hz, the library's own limits
constexpr std::uint32_t kMostChannels = 64;                    // likewise
} // namespace

struct LoudnessMeter::Meter {
    ebur128_state* state;
    ~Meter() { ebur128_destroy(&state); }
};

LoudnessMeter::LoudnessMeter(std::uint32_t channels, double sampleRate) : channels_(channels) {
    if (channels < 1 || channels > kMostChannels) return;
    if (!(sampleRate >= kLowestRate && sampleRate <= kHighestRate)) return;
    const auto rate = static_cast<unsigned long>(std::lround(sampleRate));
    if (ebur128_state* const state = ebur128_init(channels, rate, EBUR128_MODE_I))
        meter_.reset(new Meter{state});
}

LoudnessMeter::~LoudnessMeter() = default;

void LoudnessMeter::add(const float* interleaved, std::uint32_t frames) {
    const std::size_t samples = std::size_t{frames} * channels_;
    for (std::size_t i = 0; i < samples; ++i) peak_ = std::max(peak_, std::fabs(interleaved[i]));
    if (meter_ && ebur128_add_frames_float(meter_->state, interleaved, frames) != EBUR128_SUCCESS)
        meter_.reset(); // out of memory: a part would be measured as the whole
}

Loudness LoudnessMeter::measure() const {
    Loudness loudness;
    if (peak_ > 0.0f) loudness.peakDecibels = decibelsOf(double{peak_});
    double lufs = 0.0;
    if (meter_ && ebur128_loudness_global(meter_->state, &lufs) == EBUR128_SUCCESS &&
        std::isfinite(lufs))
        loudness.integratedLufs = lufs;
    return loudness;
}

} // namespace zephyra
