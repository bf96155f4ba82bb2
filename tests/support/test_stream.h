// TestStream: a stream controller with everything it needs, and lists over plain vectors.
#pragma once

#include "stream/stream_controller.h"
#include "tests/support/testing.h"

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

/// Fade times of 1 s in and 0.5 s out, and what the stream tells, in order.
struct ToldSettings : StreamSettings {
    std::vector<std::string> told;
    double fadeInTime() const override { return 1.0; }
    double fadeOutTime() const override { return 0.5; }
    void AUv3_Parameter_playToggle_from_DSP() override { told.push_back("play"); }
    void AUv3_Parameter_freezeToggle_from_DSP() override { told.push_back("freeze"); }
    void AUv3_Parameter_LiveToggle_from_DSP() override { told.push_back("live"); }
    void AUv3_Parameter_scrub_from_DSP(ControlEvents event) override {
        told.push_back(event == control_event::touchDown      ? "down"
                       : event == control_event::valueChanged ? "moved"
                                                              : "up");
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
