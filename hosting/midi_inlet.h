// MidiInlet: the lock-free MIDI queue from the host's render thread to the main queue.
#pragma once

#include "hosting/latest_midi.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/audio_unit/midi_parser.h"
#include "platform/instance.h"
#include "platform/threads/spsc_ring.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace zephyra {

/// Every message arrives, in order, as long as the main queue keeps up. Of a burst that is too long
/// the newest of each controller, note, program, pressure and bend arrives, after all that came
/// before the burst: what the controls stand at in the end is right.
class MidiInlet {
public:
    using Handler = std::function<void(const MidiMessage&)>;
    static constexpr std::size_t kCapacity = 8192;
    /// Messages that one turn of a run loop on the wall clock takes from the ring, in about half a
    /// millisecond; a long burst must not keep other instances waiting.
    static constexpr int kMostAtOnce = 1024;

    /// handler is called on MAIN and must not be empty; instance must outlive this. MAIN.
    MidiInlet(Instance& instance, Handler handler);
    /// MAIN, while nobody pushes.
    ~MidiInlet();
    MidiInlet(const MidiInlet&) = delete;
    MidiInlet& operator=(const MidiInlet&) = delete;

    /// The bytes of one event: whole messages, also several; what is cut off at its end is dropped.
    /// RENDER.
    void push(const std::uint8_t* bytes, std::size_t length) ZEPHYRA_NONBLOCKING;
    /// Marks a place between two messages, unless a burst is too long. RENDER.
    void mark() ZEPHYRA_NONBLOCKING;
    /// Hears of marks in their turn; empty, as at first, for nobody. MAIN.
    std::function<void()> marked;

    /// How many messages made way for newer ones. Any thread.
    std::uint64_t replaced() const ZEPHYRA_NONBLOCKING { return replaced_; }

private:
    struct Sent {
        MidiMessage message;       // without a status: a mark
        StateOrder::Number number; // of the last state asked for; a program asks for one
    };
    void offer(const MidiMessage& message) ZEPHYRA_NONBLOCKING;
    void take();
    Sent numbered(const MidiMessage& message) ZEPHYRA_NONBLOCKING;
    void deliver(const Sent& sent);

    Instance& instance_;
    const Handler handler_;
    RunLoop::Token source_;
    MidiParser parser_;
    SpscRing<Sent, kCapacity> ring_;
    LatestMidi latest_;
    Relaxed<std::uint64_t> replaced_{0};
};

} // namespace zephyra
