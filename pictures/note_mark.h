// NoteMark: one note that a render heard, from its note-on to what ends it.
#pragma once

#include <vector>

namespace zephyra {

struct NoteMark {
    double seconds, length;
    int number;      ///< 0..127
    double velocity; ///< above 0, up to 1
};

/// The lowest and the highest number among notes.
struct NoteRange {
    int low, high;
};

/// notes: at least one. Any thread but RENDER.
NoteRange noteRange(const std::vector<NoteMark>& notes);

} // namespace zephyra
