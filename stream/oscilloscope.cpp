#include "stream/oscilloscope.h"

#include <algorithm>

namespace zephyra {

void Oscilloscope::OscilloscopeAddAudio(const AudioBufferList& list,
                                        int frames) ZEPHYRA_NONBLOCKING {
    if (!watchers.isWatched() || frames < 1) return;
    const std::uint64_t first = added_;
    const auto count = static_cast<std::size_t>(frames);
    for (std::size_t c = 0; c < channels_.size(); ++c) {
        const auto buffer = static_cast<std::uint32_t>(c);
        const float* const from = buffer < list.mNumberBuffers ? list.floats(buffer) : nullptr;
        for (std::size_t i = 0; i < count; ++i)
            channels_[c][(first + i) % kFrames] = from ? from[i] : 0.0f;
    }
    added_ = first + count;
}

void Oscilloscope::newest(std::size_t channel, std::span<float> frames,
                          std::uint64_t since) const noexcept {
    if (channel >= channels_.size()) return;
    const std::span<float> filled = frames.first(std::min(frames.size(), kFrames));
    std::uint64_t at = added_ + kFrames - filled.size(); // of frames not there yet: silence
    for (float& frame : filled) {
        frame = at >= since + kFrames ? float{channels_[channel][at % kFrames]} : 0.0f;
        ++at;
    }
}

} // namespace zephyra
