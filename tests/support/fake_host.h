// FakeHost: an audio unit between a fake view controller and a host that tells what it is told to,
// renders cycles and keeps what came of them.
#pragma once

#include "platform/audio_unit/audio_unit_host.h"
#include "tests/support/fake_controller.h"
#include "tests/support/test_sounds.h"

namespace zephyra {

/// Its input is one channel of its own memory, for both sides.
struct FakeHost : AUHostMusicalContextBlock, AUHostTransportStateBlock, AURenderPullInputBlock {
    explicit FakeHost(FourCharCode type = component_type::effect) {
        unit = MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                       instance, status);
        controller.unit = unit.get();
        unit->setController_andParameters(&controller, FakeController::parameters());
        unit->musicalContextBlock = this;
        unit->transportStateBlock = this;
    }

    /// Allocates and does everything that was posted.
    void ready() {
        unit->allocateRenderResourcesAndReturnError();
        instance.runLoop.runPosted();
        controller.takeCalls();
    }
    OSStatus cycle(std::uint32_t frames, const AURenderEvent* events = nullptr) {
        AudioBufferList list = out.from(0);
        if (!outputs) list.mBuffers[0].mData = list.mBuffers[1].mData = nullptr;
        status = unit->internalRenderBlock()(frames, list, events, this);
        for (std::uint32_t c = 0; status == 0 && c < 2; ++c)
            rendered[c].assign(list.floats(c), list.floats(c) + frames);
        return status;
    }
    /// What MAIN hears after a cycle.
    std::string after(const AURenderEvent* events = nullptr) {
        cycle(64, events);
        unit->takeNotices();
        return controller.takeCalls();
    }

    bool musicalContext(AUMusicalContext& asked) ZEPHYRA_NONBLOCKING override {
        asked = context;
        return true;
    }
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override {
        state.flags = moving ? transport_flag::moving : transport_flag::cycling;
        return true;
    }
    OSStatus pullInput(std::uint32_t, std::int64_t,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
        list.mBuffers[0].mData = list.mBuffers[1].mData = inputs ? input.data() : nullptr;
        return pullStatus;
    }

    Instance instance;
    FakeController controller{instance};
    std::unique_ptr<MyAudioUnit> unit;
    OSStatus status = 0, pullStatus = 0;
    AUMusicalContext context;
    bool moving = false, inputs = true;
    bool outputs = true; ///< whether the host brings memory for them
    std::vector<float> input = std::vector<float>(4096, 0.5f);
    StereoBlock out{4096};
    std::vector<float> rendered[2];
};

} // namespace zephyra
