// limitOutput: what the standalone program plays at most.
#pragma once

#include "platform/threads/realtime.h"

#include <algorithm>
#include <cstdint>

namespace zephyra {

/// 12 dB above full scale: room for a recorder that listens, where loudspeakers have long clipped.
inline constexpr float kLoudestOutput = 4.0f;

/// LIVE in a loop without loss, output to input, would grow to millions. RENDER.
inline void limitOutput(float* channel, std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    for (std::uint32_t n = 0; n < frames; ++n)
        channel[n] = std::clamp(channel[n], -kLoudestOutput, kLoudestOutput);
}

} // namespace zephyra
