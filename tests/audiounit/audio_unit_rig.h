// AudioUnitRig: renders cycles of an audio unit and keeps what came of them.
#pragma once

#include "tests/support/fake_host.h"

namespace zephyra {

struct AudioUnitRig : FakeHost {
    explicit AudioUnitRig(FourCharCode type = component_type::effect) : FakeHost(type) {}
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

    bool outputs = true; ///< whether the host brings memory for them
    std::vector<float> rendered[2];
};

} // namespace zephyra
