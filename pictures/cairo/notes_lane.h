// NoteMark and drawNotes: the notes that a render heard, over its time.
#pragma once

#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/picture_canvas.h"
#include "rendering/midi_file.h"

#include <vector>

namespace zephyra {

/// One note, from its note-on to what ends it.
struct NoteMark {
    double seconds, length;
    int number;      ///< 0..127
    double velocity; ///< above 0, up to 1
};

/// The notes of messages that begin before end (seconds), by time. A note ends with its note-off,
/// with the next note-on of its channel and number, or at end.
std::vector<NoteMark> notesOf(const std::vector<TimedMidi>& messages, double end);

/// Pixels that the lane of such notes takes; 0 for none.
double notesHeight(const std::vector<NoteMark>& notes);

/// Draws the notes across box, high ones at the top, with names where there is room. seconds: of
/// box.
void drawNotes(Canvas& canvas, const Box& box, const std::vector<NoteMark>& notes, double seconds,
               const std::vector<Tick>& grid);

} // namespace zephyra
