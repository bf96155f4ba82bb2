// Oscilloscope: the newest output of a stream, kept for a screen that looks at it.
#pragma once

#include "platform/sound/audio_buffer_list.h"
#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"
#include "stream/watch_count.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace zephyra {

/// A ring of the last kFrames frames. RENDER fills it while somebody looks, and passes it by
/// otherwise; what was kept before stays.
class Oscilloscope {
public:
    static constexpr std::size_t kFrames = 8192; ///< 186 ms at 44100 Hz

    /// Who looks; nobody at first.
    WatchCount watchers;

    /// Adds frames samples of the first two buffers of list, which are only read; a missing one is
    /// silent. RENDER.
    void OscilloscopeAddAudio(const AudioBufferList& list, int frames) ZEPHYRA_NONBLOCKING;

    /// Frames ever added: while it stands still, there is nothing new. Any thread.
    std::uint64_t added() const noexcept { return added_; }

    /// The newest frames of channel 0 (left) or 1, oldest first; at most kFrames are filled, with
    /// silence for what was added before there were since frames. While RENDER goes on, the oldest
    /// of kFrames frames may already be newer ones. Any thread but RENDER.
    void newest(std::size_t channel, std::span<float> frames,
                std::uint64_t since = 0) const noexcept;

private:
    Relaxed<std::uint64_t> added_ = 0; // frames ever
    std::array<std::array<Relaxed<float>, kFrames>, 2> channels_;
};

} // namespace zephyra
