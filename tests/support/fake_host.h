// FakeHost: an audio unit between a fake view controller and a host that tells what it is told to.
#pragma once

#include "platform/audio_unit/audio_unit_host.h"
#include "tests/support/fake_controller.h"
#include "tests/support/test_sounds.h"

#include <vector>

namespace zephyra {

/// Its input is one channel of its own memory, for both sides.
struct FakeHost : AUHostMusicalContextBlock, AUHostTransportStateBlock, AURenderPullInputBlock {
    explicit FakeHost(FourCharCode type) {
        unit = MyAudioUnit::initWithComponentDescription_options_error({.componentType = type},
                                                                       instance, status);
        controller.unit = unit.get();
        unit->setController_andParameters(&controller, FakeController::parameters());
        unit->musicalContextBlock = this;
        unit->transportStateBlock = this;
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
    std::vector<float> input = std::vector<float>(4096, 0.5f);
    StereoBlock out{4096};
};

} // namespace zephyra
