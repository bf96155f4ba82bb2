// TestStream: a stream controller with everything it needs, and lists over plain vectors.
#pragma once

#include "stream/stream_controller.h"

#include <initializer_list>
#include <vector>

namespace zephyra {

struct TestStream {
    Instance instance;
    MOK_SCRUB_GRANULATOR controller{instance};

    MOK_SCRUB_GRANULATOR* operator->() { return &controller; }
    /// Lets seconds go by on the sample clock, the posted steps included.
    void pass(double seconds) {
        instance.runLoop.setClock(RunLoop::Clock::sample);
        instance.runLoop.advance(instance.runLoop.now() + seconds);
    }
};

/// A buffer list over channels that the caller keeps.
struct ChannelList {
    ChannelList(std::initializer_list<float*> channels) {
        for (float* channel : channels) buffers.push_back({.mData = channel});
        list = {static_cast<std::uint32_t>(buffers.size()), buffers.data()};
    }
    ChannelList(const ChannelList&) = delete;
    ChannelList& operator=(const ChannelList&) = delete;

    std::vector<AudioBuffer> buffers;
    AudioBufferList list;
};

} // namespace zephyra
