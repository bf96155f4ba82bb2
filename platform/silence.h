// isBelow, isSilence: whether samples are too small to be heard.
#pragma once

#include "platform/threads/realtime.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace zephyra {

/// Whether each of count samples has a magnitude below limit; NaN has not. Sound is found out at
/// its first samples. Any thread.
inline bool isBelow(const float* samples, std::uint32_t count, float limit) ZEPHYRA_NONBLOCKING {
    constexpr std::uint32_t kStretch = 64; // compared without branches
    for (std::uint32_t first = 0; first < count; first += kStretch) {
        const std::uint32_t end = std::min(first + kStretch, count);
        int above = 0;
        for (std::uint32_t n = first; n < end; ++n) above |= !(std::fabs(samples[n]) < limit);
        if (above != 0) return false;
    }
    return true;
}

/// Whether all are 0 to whoever flushes denormals. Any thread.
inline bool isSilence(const float* samples, std::uint32_t count) ZEPHYRA_NONBLOCKING {
    return isBelow(samples, count, std::numeric_limits<float>::min());
}

} // namespace zephyra
