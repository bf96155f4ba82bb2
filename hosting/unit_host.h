// UnitHost: calls an audio unit's render block, and answers what the unit asks of its host.
#pragma once

#include "audiounit/my_audio_unit.h"
#include "hosting/host_time.h"
#include "platform/audio_unit/audio_unit_host.h"
#include "platform/instance.h"

#include <cstdint>

namespace zephyra {

/// What holds from start() on.
struct HostSetup {
    double sampleRate = 44100.0;     ///< Hz
    std::uint32_t blockFrames = 512; ///< of one cycle at most, 1..MyAudioUnit::kMostFramesToRender
};

/// What one cycle reads and writes, both channels.
struct HostCycle {
    std::uint32_t frames = 0;
    const float* input[2] = {}; ///< null: silence
    float* output[2] = {};      ///< frames floats each, overwritten; never null
};

/// What every host of a unit does, whichever clock drives MAIN. Made OFF; the unit and the instance
/// must outlive it.
class UnitHost final : AUHostMusicalContextBlock,
                       AUHostTransportStateBlock,
                       AURenderPullInputBlock {
public:
    UnitHost(MyAudioUnit& unit, Instance& instance) : unit_(unit), instance_(instance) {}
    ~UnitHost() { stop(); }
    UnitHost(const UnitHost&) = delete;
    UnitHost& operator=(const UnitHost&) = delete;

    /// Sets session, rate of the buses (their channel counts stay) and block length, and allocates
    /// inside RunLoop::Scope; a running host stops first. A code of audio_unit_status on failure;
    /// then nothing runs. OFF.
    OSStatus start(const HostSetup& setup);
    /// Deallocates inside RunLoop::Scope. OFF.
    void stop();
    bool isRunning() const ZEPHYRA_NONBLOCKING { return running_; }
    const HostSetup& setup() const ZEPHYRA_NONBLOCKING { return setup_; }

    HostTime time; ///< what the unit is told of the music

    /// Events alone, in a cycle of 0 frames that tells neither of music nor of transport: those go
    /// with the sound, and an event moves no downbeat. RENDER.
    OSStatus handOver(const AURenderEvent* events) ZEPHYRA_NONBLOCKING;
    /// One cycle with its events, which may be null, of at most setup().blockFrames. The time goes
    /// on by it. RENDER.
    OSStatus render(const HostCycle& cycle, const AURenderEvent* events) ZEPHYRA_NONBLOCKING;

    /// The same for a host in real time: where the input is silent and the unit rests, the output
    /// is silence, and the unit hears of the music alone. Costs next to nothing then. RENDER.
    OSStatus renderOrRest(const HostCycle& cycle, const AURenderEvent* events) ZEPHYRA_NONBLOCKING;

private:
    bool rests(const HostCycle& cycle) const ZEPHYRA_NONBLOCKING;
    bool musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING override;
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override;
    OSStatus pullInput(std::uint32_t frames, std::int64_t bus,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override;
    OSStatus allocate(const HostSetup& setup);
    OSStatus callUnit(const HostCycle& cycle, const AURenderEvent* events) ZEPHYRA_NONBLOCKING;

    MyAudioUnit& unit_;
    Instance& instance_;
    HostSetup setup_;
    bool running_ = false;
    bool handsOver_ = false; // in a cycle of 0 frames, which tells of events alone
    const float* input_[2] = {};
};

} // namespace zephyra
