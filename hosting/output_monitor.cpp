#include "hosting/output_monitor.h"

namespace zephyra {

void OutputMonitor::add(const float* left, const float* right,
                        std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    const auto bytes = frames * static_cast<std::uint32_t>(sizeof(float));
    AudioBuffer channels[2] = {{.mDataByteSize = bytes, .mData = const_cast<float*>(left)},
                               {.mDataByteSize = bytes, .mData = const_cast<float*>(right)}};
    const AudioBufferList list{.mNumberBuffers = 2, .mBuffers = channels};
    oscilloscope.OscilloscopeAddAudio(list, static_cast<int>(frames));
    levels.add(list, frames);
}

} // namespace zephyra
