// notesOf: the notes that MIDI messages play.
#pragma once

#include "pictures/note_mark.h"
#include "rendering/events/midi_file.h"

#include <vector>

namespace zephyra {

/// The notes of messages that begin before end (seconds), by time. A note ends with its note-off,
/// with the next note-on of its channel and number, or at end. Any thread but RENDER.
std::vector<NoteMark> notesOf(const std::vector<TimedMidi>& messages, double end);

} // namespace zephyra
