#include "hosting/output_monitor.h"

#include "platform/threads/flush_denormals.h"

namespace zephyra {

void OutputMonitor::add(const float* left, const float* right,
                        std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    if (!oscilloscope.watchers.isWatched() && !levels.watchers.isWatched()) return;
    const FlushDenormals flush;
    const auto bytes = frames * static_cast<std::uint32_t>(sizeof(float));
    AudioBuffer channels[2] = {{.mDataByteSize = bytes, .mData = const_cast<float*>(left)},
                               {.mDataByteSize = bytes, .mData = const_cast<float*>(right)}};
    const AudioBufferList list{.mNumberBuffers = 2, .mBuffers = channels};
    oscilloscope.OscilloscopeAddAudio(list, static_cast<int>(frames));
    levels.add(list, frames);
}

} // namespace zephyra
