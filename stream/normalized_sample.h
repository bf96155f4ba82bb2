// PlayableSound: a sound that a stream takes, looked through and peak-normalized.
#pragma once

#include "engine/sample_buffer.h"

#include <memory>
#include <optional>
#include <span>

namespace zephyra {

/// What a sample may reach, times full scale: 32-bit whole numbers that nobody scaled down. Sums of
/// much louder ones are no longer finite, and the echo would keep them for ever.
inline constexpr float kMostSample = 0x1p32f;

/// Whether no sample is louder than kMostSample (NaN is). Any thread but RENDER.
bool isPlayable(std::span<const float> samples) noexcept;
/// The same, and that the rate is above 0. Any thread but RENDER.
bool isPlayable(const mokSample& sound) noexcept;

/// sound with a peak of wanted instead of peak: itself where nothing is to be scaled or no finite
/// gain gets there, else a copy; null when memory is short. Any thread but RENDER.
std::shared_ptr<const mokSample> normalizedCopy(const std::shared_ptr<const mokSample>& sound,
                                                float peak, float wanted) noexcept;

/// A sound that was looked through, and what is heard of it. Plain data.
struct PlayableSound {
    std::shared_ptr<const mokSample> sound;  ///< as it was loaded
    float peak = 0.0f;                       ///< its largest magnitude
    std::optional<float> wanted = {};        ///< the peak it is scaled to; played as it is without
    std::shared_ptr<const mokSample> played; ///< a scaled copy, or sound itself
};

/// Reads the whole sound, so a long one belongs on WORKER. Nothing for null, a sound that is not
/// playable, and when memory is short. Any thread but RENDER.
std::optional<PlayableSound> playableSound(std::shared_ptr<const mokSample> sound,
                                           std::optional<float> wanted) noexcept;

} // namespace zephyra
