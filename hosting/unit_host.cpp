#include "hosting/unit_host.h"

#include <algorithm>

namespace zephyra {

using audio_unit_status::noError;

OSStatus UnitHost::start(const HostSetup& setup) {
    stop();
    const RunLoop::Scope main(instance_.runLoop);
    if (const OSStatus status = allocate(setup); status != noError) return status;
    running_ = true;
    setup_ = setup;
    time.start(setup.sampleRate);
    return noError;
}

OSStatus UnitHost::allocate(const HostSetup& setup) {
    if (const OSStatus status = unit_.setMaximumFramesToRender(setup.blockFrames);
        status != noError)
        return status;
    for (const AUAudioUnitBusArray* side : {&unit_.inputBusses(), &unit_.outputBusses()})
        for (AUAudioUnitBus* bus : side->busses)
            if (const OSStatus status =
                    bus->setFormat({setup.sampleRate, bus->format().channelCount});
                status != noError)
                return status;
    instance_.session = {.sampleRate = setup.sampleRate,
                         .IOBufferDuration = setup.blockFrames / setup.sampleRate};
    unit_.musicalContextBlock = this;
    unit_.transportStateBlock = this;
    const OSStatus status = unit_.allocateRenderResourcesAndReturnError();
    if (status != noError) unit_.musicalContextBlock = nullptr, unit_.transportStateBlock = nullptr;
    return status;
}

void UnitHost::stop() {
    if (!running_) return;
    running_ = false;
    const RunLoop::Scope main(instance_.runLoop);
    unit_.deallocateRenderResources();
    unit_.musicalContextBlock = nullptr;
    unit_.transportStateBlock = nullptr;
}

OSStatus UnitHost::handOver(const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    handsOver_ = true;
    const OSStatus status = callUnit({}, events);
    handsOver_ = false;
    return status;
}

OSStatus UnitHost::render(const HostCycle& cycle, const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    input_[0] = cycle.input[0];
    input_[1] = cycle.input[1];
    const OSStatus status = callUnit(cycle, events);
    if (status == noError) time.goOn(cycle.frames);
    return status;
}

OSStatus UnitHost::callUnit(const HostCycle& cycle,
                            const AURenderEvent* events) ZEPHYRA_NONBLOCKING {
    const auto bytes = cycle.frames * static_cast<std::uint32_t>(sizeof(float));
    AudioBuffer channels[2] = {{.mDataByteSize = bytes, .mData = cycle.output[0]},
                               {.mDataByteSize = bytes, .mData = cycle.output[1]}};
    AudioBufferList output{.mNumberBuffers = 2, .mBuffers = channels};
    return unit_.internalRenderBlock()(cycle.frames, output, events, this);
}

bool UnitHost::musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING {
    return !handsOver_ && time.musicalContext(context);
}

bool UnitHost::transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING {
    return time.transportState(state) && !handsOver_;
}

OSStatus UnitHost::pullInput(std::uint32_t frames, std::int64_t /*bus*/,
                             AudioBufferList& list) ZEPHYRA_NONBLOCKING {
    for (std::uint32_t c = 0; c < list.mNumberBuffers; ++c) {
        float* const to = list.floats(c);
        const float* const from = c < 2 ? input_[c] : nullptr;
        if (!to) continue; // no memory is silence
        if (from)
            std::copy_n(from, frames, to);
        else
            std::fill_n(to, frames, 0.0f);
    }
    return noError;
}

} // namespace zephyra
