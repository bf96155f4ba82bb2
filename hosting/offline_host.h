// OfflineHost: calls an audio unit block by block the way a host does, on the sample clock.
#pragma once

#include "hosting/event_queue.h"
#include "hosting/midi_inlet.h"
#include "hosting/unit_host.h"
#include "platform/instance.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace zephyra {

/// Order of calls: start, then set and queue what is to come and render, as often as wished, stop.
/// The thread that renders is RENDER while it is inside render(), and MAIN around it.
class OfflineHost {
public:
    /// unit and instance must outlive this; start() puts the run loop on the sample clock.
    OfflineHost(MyAudioUnit& unit, Instance& instance);
    /// The same over a host that renders in real time as well: goOffline() takes start()'s place.
    OfflineHost(UnitHost& host, Instance& instance);
    ~OfflineHost();
    OfflineHost(const OfflineHost&) = delete;
    OfflineHost& operator=(const OfflineHost&) = delete;

    /// Sets session, rate of the buses (their channel counts stay) and block length, allocates
    /// inside RunLoop::Scope, runs the main queue and waits for the background work it began. A
    /// running host stops first. A code of audio_unit_status on failure; then nothing runs. Nothing
    /// that was queued for render() stays; what the host reports does.
    OSStatus start(const HostSetup& setup);
    /// Puts the run loop on the sample clock from here on, in a stretch of its own, with nothing
    /// queued: the unit goes on running. The thread that renders.
    void goOffline();
    /// Begins another stretch, see RunLoop::beginStretch().
    void beginStretch();
    /// Deallocates inside RunLoop::Scope.
    void stop();

    /// The music that the unit is told of, from the next block on.
    void setTempo(double beatsPerMinute) { host_.time.setTempo(beatsPerMinute); }
    void setMeter(double numerator, double denominator = 4) {
        host_.time.setMeter(numerator, denominator);
    }
    void setBeatPosition(double beats) { host_.time.setBeatPosition(beats); }
    double beatPosition() const { return host_.time.beatPosition(); }
    void reportContext(bool on) { host_.time.reportContext(on); }
    void setTransport(bool moving) { host_.time.setTransport(moving); }
    void reportTransport(bool on) { host_.time.reportTransport(on); }

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
    /// That, counted from the next block's start; then nothing waits.
    std::vector<EventQueue::Entry> takeQueued() { return events_.takeAll(); }
    /// Does what was asked for, and waits for what that begins.
    void settle();

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
    /// Tells the unit of music and transport without sound, which a block of 0 frames leaves out.
    OSStatus tellTime();

    /// Frames rendered since start.
    std::uint64_t renderedFrames() const { return host_.time.rendered(); }
    /// Seconds of this machine's time inside the render block since start.
    double renderSeconds() const { return renderSeconds_; }

private:
    OSStatus actUpTo(std::uint32_t frame);
    OSStatus handOver(std::span<EventQueue::Entry> events);
    std::uint32_t cycleEnd(std::uint32_t begin, std::uint32_t frames);
    OSStatus renderCycle(const Block& block, std::uint32_t begin, std::uint32_t end);

    Instance& instance_;
    std::unique_ptr<UnitHost> own_; // null over somebody else's
    UnitHost& host_;
    MidiInlet* inlet_ = nullptr;
    EventQueue events_;
    std::function<void(std::uint32_t)> listener_;
    std::uint64_t startedFrame_ = 0; // where the run loop's stretch began
    double renderSeconds_ = 0.0;
};

} // namespace zephyra
