#include "hosting/bypass_fade.h"

#include "audiounit/my_audio_unit.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zephyra {

namespace {

/// As the audio unit takes it: what no sound can be is silence.
float passedOn(float sample) ZEPHYRA_NONBLOCKING {
    const float size = std::fabs(sample);
    const bool isSound =
        size >= std::numeric_limits<float>::min() && size <= MyAudioUnit::kMostInput;
    return isSound ? sample : 0.0f;
}

} // namespace

void BypassFade::start(double sampleRate) noexcept {
    length_ = static_cast<std::uint32_t>(std::max(sampleRate * kSeconds, 1.0));
    at_ = bypassed_ ? length_ : 0;
}

void BypassFade::mix(float* const (&made)[2], const float* const (&passed)[2],
                     std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    const std::uint32_t left = bypassed_ ? length_ - at_ : at_;
    const std::uint32_t fading = std::min(frames, left);
    const float scale = 1.0f / static_cast<float>(length_);
    for (std::size_t c = 0; c < 2; ++c) {
        float* const to = made[c];
        const float* const from = passed[c];
        for (std::uint32_t n = 0; n < fading; ++n) {
            const std::uint32_t at = bypassed_ ? at_ + n + 1 : at_ - n - 1;
            const float share = static_cast<float>(at) * scale;
            to[n] += share * ((from ? passedOn(from[n]) : 0.0f) - to[n]);
        }
        if (!bypassed_) continue;
        for (std::uint32_t n = fading; n < frames; ++n) to[n] = from ? passedOn(from[n]) : 0.0f;
    }
    at_ = bypassed_ ? at_ + fading : at_ - fading;
}

} // namespace zephyra
