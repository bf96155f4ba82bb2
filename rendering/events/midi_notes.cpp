#include "rendering/events/midi_notes.h"

#include "platform/audio_unit/midi_message.h"

#include <cstddef>

namespace zephyra {

std::vector<NoteMark> notesOf(const std::vector<TimedMidi>& messages, double end) {
    std::vector<NoteMark> notes;
    std::vector<int> sounding(16 * 128, -1); // by channel and number: its place in notes
    for (const TimedMidi& timed : messages) {
        const MidiMessage message{timed.bytes};
        const bool on = message.kind() == MidiKind::noteOn;
        if (timed.seconds >= end || (!on && message.kind() != MidiKind::noteOff)) continue;
        int& place =
            sounding[static_cast<std::size_t>((message.channel() - 1) * 128 + message.data1())];
        if (place >= 0) {
            NoteMark& before = notes[static_cast<std::size_t>(place)];
            before.length = timed.seconds - before.seconds;
        }
        place = -1;
        if (!on || message.data2() == 0) continue;
        place = static_cast<int>(notes.size());
        notes.push_back(
            {timed.seconds, end - timed.seconds, message.data1(), message.data2() / 127.0});
    }
    return notes;
}

} // namespace zephyra
