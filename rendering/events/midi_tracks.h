// MidiTracks: what the tracks of a standard MIDI file hold, at the file's own ticks.
#pragma once

#include "platform/text/result.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// One channel message.
struct TickedMidi {
    std::uint32_t tick; ///< from the file's begin, below 2^28
    std::uint8_t length;
    std::array<std::uint8_t, 3> bytes; ///< status first, also where the file leaves it out
};

/// A tempo that holds from its tick on.
struct TickedTempo {
    std::uint32_t tick;
    std::uint32_t microseconds; ///< a beat, from 1 up
};

/// A meter that holds from its tick on.
struct TickedMeter {
    std::uint32_t tick;
    std::uint8_t beats; ///< of a bar, from 1 up
    std::uint8_t value; ///< of a beat: 1, 2, 4 to 64
};

/// Track after track, the events of each in time's order.
struct MidiTracks {
    std::uint32_t ticksPerBeat = 1; ///< to 32767
    std::vector<TickedMidi> messages = {};
    std::vector<TickedTempo> tempos = {};
    std::vector<TickedMeter> meters = {};
    std::vector<std::string> notices = {}; ///< what is odd but can be read, a line each
};

/// Reads what other programs write, also where it strays: a count of tracks that is off, bytes
/// after the last track, a longer header, chunks that are no tracks, a running status that goes on
/// across meta and system-exclusive events; each gives a notice. Fails, saying what is wrong,
/// unless the bytes begin with a header of format 0 or 1 and of beats (not film frames), there is a
/// track, and each track is all there, holds whole events only, ends with its end mark, and lasts
/// less than 2^28 ticks. Any thread but RENDER.
Result<MidiTracks> readMidiTracks(std::string_view bytes);

} // namespace zephyra
