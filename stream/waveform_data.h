// waveform_data: what RENDER records live input by, and LiveSample, the circular buffer it fills.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/threads/relaxed.h"

#include <atomic>
#include <cstdint>

namespace zephyra {

/// A circular buffer of input. Its offset is the write index, its ready flag enables writing; its
/// guard points are never written, because no live read reaches them.
struct LiveSample : mokSample {
    /// Frames from the buffer's start up to the last one ever written: everything behind is silence
    /// that nobody played. Written by RENDER, read by any thread.
    Relaxed<std::uint64_t> heard = 0;
};

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
