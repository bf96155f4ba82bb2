// TestStream: a stream controller with everything it needs, and lists over plain vectors.
#pragma once

#include "stream/stream_controller.h"

#include <initializer_list>
#include <vector>

namespace zephyra {

struct TestStream {
    NotificationCenter notifications;
    AudioSession session;
    MOK_SCRUB_GRANULATOR controller{notifications, session};

    MOK_SCRUB_GRANULATOR* operator->() { return &controller; }
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
