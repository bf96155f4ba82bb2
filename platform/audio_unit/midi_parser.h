// MidiParser: takes MIDI bytes as they come and yields whole channel messages.
#pragma once

#include "platform/audio_unit/midi_message.h"
#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra {

/// Knows running status. Real-time bytes may lie anywhere and change nothing; system exclusive and
/// system common messages are skipped and end running status; data bytes without a status are
/// dropped, and so is a message that a new status cuts off. Note-ons of velocity 0 stay what they
/// are. One thread at a time.
class MidiParser {
public:
    /// True when byte completes a message, which is then in out; else out is left alone.
    bool next(std::uint8_t byte, MidiMessage& out) ZEPHYRA_NONBLOCKING;
    /// Forgets running status and what has begun.
    void reset() ZEPHYRA_NONBLOCKING { message_ = {}; }

private:
    MidiMessage message_;      // under way; status 0 while there is none
    unsigned dataBytes_ = 0;   // that a message of this status has
    unsigned dataArrived_ = 0; // of them
};

} // namespace zephyra
