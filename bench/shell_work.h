// ShellWork: a plug-in's instance that works as hard as the speed goals say, inside a shell or
// bare.
#pragma once

#include "bench/bench_work.h"
#include "hosting/plugin_instance.h"
#include "platform/audio_unit/audio_unit_host.h"

#include <algorithm>
#include <cstdint>

namespace zephyra {

/// What a shell's host and the unit's own host read and write.
struct ShellMemory {
    static constexpr int kMostFrames = 512;
    StereoBlock input{kMostFrames}, output{kMostFrames};

    ShellMemory() {
        const auto noise = noiseSample(kMostFrames, BenchWork::kRate);
        std::copy_n(noise->getPtr(), kMostFrames, input.left.data());
        std::copy_n(noise->getPtr(), kMostFrames, input.right.data());
    }
};

/// Calls the render block of an instance's audio unit as a host of its own would.
struct BareUnit final : AURenderPullInputBlock {
    BareUnit(PluginInstance& instance, ShellMemory& host)
        : unit(*instance.system().unit), memory(host) {}

    void render(int frames) {
        AudioBufferList list = memory.output.from(0);
        unit.internalRenderBlock()(static_cast<std::uint32_t>(frames), list, nullptr, this);
    }
    OSStatus pullInput(std::uint32_t, std::int64_t,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override {
        list.mBuffers[0].mData = memory.input.left.data();
        list.mBuffers[1].mData = memory.input.right.data();
        return audio_unit_status::noError;
    }

    MyAudioUnit& unit;
    ShellMemory& memory;
};

/// 24 grains, echo and ring modulator, an effect half dry; MAIN has had its say before.
inline void workHard(PluginInstance& instance, const BenchWork& work) {
    const RunLoop::Scope main(instance.system().instance.runLoop);
    mokGranulatorSF& engine = instance.system().stream().engine();
    instance.system().unit->setDryWet(60.0f);
    engine.setSample(work.sample.get());
    engine.setWindow(&work.window);
    BenchWork::configure(engine);
    engine.echoOn = engine.ringOn = true;
    BenchWork::settle(engine);
}

} // namespace zephyra
