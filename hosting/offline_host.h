// OfflineHost: calls an audio unit block by block the way a host does, on the sample clock.
#pragma once

#include "audiounit/my_audio_unit.h"
#include "hosting/event_queue.h"
#include "hosting/midi_inlet.h"
#include "platform/audio_unit/audio_unit_host.h"
#include "platform/instance.h"

#include <cstdint>
#include <functional>
#include <span>
#include <utility>

namespace zephyra {

/// What holds from start() on.
struct HostSetup {
    double sampleRate = 44100.0;     ///< Hz
    std::uint32_t blockFrames = 512; ///< of one cycle at most, 1..MyAudioUnit::kMostFramesToRender
};

/// Order of calls: start, then set and queue what is to come and render, as often as wished, stop.
/// The thread that renders is RENDER while it is inside render(), and MAIN around it.
class OfflineHost final : AUHostMusicalContextBlock,
                          AUHostTransportStateBlock,
                          AURenderPullInputBlock {
public:
    /// unit and instance must outlive this; start() puts the run loop on the sample clock.
    OfflineHost(MyAudioUnit& unit, Instance& instance);
    ~OfflineHost();
    OfflineHost(const OfflineHost&) = delete;
    OfflineHost& operator=(const OfflineHost&) = delete;

    /// Sets session, rate of the buses (their channel counts stay) and block length, allocates
    /// inside RunLoop::Scope, runs the main queue and waits for the background work it began. A
    /// running host stops first. A code of audio_unit_status on failure; then nothing runs. Nothing
    /// that was queued for render() stays; what the host reports does.
    OSStatus start(const HostSetup& setup);
    /// Deallocates inside RunLoop::Scope.
    void stop();

    /// The musical context from the next block on. Not finite values are not reported; a host
    /// without a tempo reports no context at all.
    void setTempo(double beatsPerMinute);
    void setMeter(double numerator, double denominator = 4);
    /// In beats; while the transport moves it goes on by itself with the tempo.
    void setBeatPosition(double beats);
    double beatPosition() const { return beats_; }
    /// Whether a musical context is reported; off at first.
    void reportContext(bool on) { reportsContext_ = on; }
    /// From the next block on; the transport stands at first.
    void setTransport(bool moving);
    /// Whether the transport is reported; off at first, and a host need not.
    void reportTransport(bool on) { reportsTransport_ = on; }

    /// Where MIDI goes besides the unit; null, as at first, for nowhere else. It must outlive this
    /// or be taken away. From the next block on.
    void setMidiInlet(MidiInlet* inlet) { inlet_ = inlet; }

    /// Events act where EventQueue says, counted from the next block's start: the unit gets them in
    /// a cycle of 0 frames, the main queue runs, and what is rendered then is shaped by them.
    /// Values are linear; the unit takes a ramp's end at once. Of MIDI the unit gets up to three
    /// bytes and the inlet all of them; none is ignored.
    void queueParameter(AUParameterAddress address, AUValue value, std::uint32_t offset = 0);
    void queueRamp(AUParameterAddress address, AUValue end, std::uint32_t frames,
                   std::uint32_t offset = 0);
    void queueMidi(const std::uint8_t* bytes, std::uint16_t length, std::uint32_t offset = 0);
    /// Something, never empty, that is done on MAIN at its frame, in its place among the events.
    void queueTask(std::function<void()> task, std::uint32_t offset = 0);
    /// Whether something waits for the next block.
    bool hasQueued() const { return !events_.isEmpty(); }

    /// Hears before each cycle that renders, once all that is due was done, where it will end, in
    /// frames from the block's start; empty, as at first, for nobody. MAIN.
    void setCycleListener(std::function<void(std::uint32_t end)> listener) {
        listener_ = std::move(listener);
    }

    /// What one call renders.
    struct Block {
        std::uint32_t frames = 0;         ///< with 0 what is due at once is done
        const float* inputLeft = nullptr; ///< null: silence
        const float* inputRight = nullptr;
        float* left = nullptr; ///< frames floats, overwritten; never null
        float* right = nullptr;
    };
    /// Waits for background work, runs the main queue, renders in cycles that end at multiples of
    /// the block length and where an event acts, and advances the run loop by each. The first that
    /// fails ends it.
    OSStatus render(const Block& block);

    /// Frames rendered since start.
    std::uint64_t renderedFrames() const { return rendered_; }
    /// Seconds of this machine's time inside the render block since start.
    double renderSeconds() const { return renderSeconds_; }

private:
    bool musicalContext(AUMusicalContext& context) ZEPHYRA_NONBLOCKING override;
    bool transportState(AUTransportState& state) ZEPHYRA_NONBLOCKING override;
    OSStatus pullInput(std::uint32_t frames, std::int64_t bus,
                       AudioBufferList& list) ZEPHYRA_NONBLOCKING override;
    OSStatus allocate(const HostSetup& setup);
    void takeBlocksAway();
    void settle();
    OSStatus actUpTo(std::uint32_t frame);
    OSStatus handOver(std::span<EventQueue::Entry> events);
    std::uint32_t cycleEnd(std::uint32_t begin, std::uint32_t frames);
    OSStatus renderCycle(const Block& block, std::uint32_t begin, std::uint32_t end);
    OSStatus callUnit(std::uint32_t frames, AudioBuffer (&channels)[2],
                      const AURenderEvent* events);
    void goOn(std::uint32_t frames);
    void keepBeats();

    MyAudioUnit& unit_;
    Instance& instance_;
    MidiInlet* inlet_ = nullptr;
    HostSetup setup_;
    bool running_ = false;
    bool handsOver_ = false; // in a cycle of 0 frames, which tells of events alone
    EventQueue events_;
    std::function<void(std::uint32_t)> listener_;
    AUMusicalContext context_; // without the beat position
    bool reportsContext_ = false, reportsTransport_ = false, moving_ = false, wasMoving_ = false;
    double beats_ = 0.0;
    double keptBeats_ = 0.0;   // at frame keptAt_; from there on one tempo holds
    std::uint64_t keptAt_ = 0; // so that no rounding adds up
    std::uint64_t rendered_ = 0;
    double startedAt_ = 0.0; // run-loop seconds at frame 0
    double renderSeconds_ = 0.0;
    const float* input_[2] = {}; // of the present cycle
};

} // namespace zephyra
