// limitedSample and sixteenBits: how floats become what a 16-bit file can hold, in every writer
// alike.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace zephyra {

inline constexpr float kLowestLimited = -1.0f;
/// A bit below full scale, so that · 32768 stays a 16-bit value.
inline constexpr float kHighestLimited = 0.999f;

/// NaN becomes 0. Any thread.
inline float limitedSample(float value) noexcept {
    return std::isnan(value) ? 0.0f : std::clamp(value, kLowestLimited, kHighestLimited);
}

/// The integer part of a limited value · 32768. Any thread.
inline std::int16_t sixteenBits(float limited) noexcept {
    return static_cast<std::int16_t>(limited * 32768.0f);
}

/// 0 for NaN and infinities, which no player can play. Any thread.
inline float finiteSample(float value) noexcept {
    return std::isfinite(value) ? value : 0.0f;
}

} // namespace zephyra
