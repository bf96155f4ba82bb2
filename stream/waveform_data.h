// waveform_data: what RENDER records live input by.
#pragma once

#include "platform/threads/relaxed.h"
#include "stream/live_sample.h"

#include <atomic>
#include <cstdint>

namespace zephyra {

/// One per stream.
struct waveform_data {
    Relaxed<bool> isLiveEnabled = false;             ///< nothing is written while false
    Relaxed<float> normalizeGain = 1.0f;             ///< factor for input as it is written
    Relaxed<std::int64_t> numberOfInputChannels = 2; ///< of the input bus; below 2 is mono
    std::int32_t timerCount = 0; ///< render cycles since the last redraw request; RENDER's own
    /// The live sample, whether it is heard or not. RENDER takes one snapshot per block, see
    /// RenderCycle.
    std::atomic<LiveSample*> mSample = nullptr;
};

} // namespace zephyra
