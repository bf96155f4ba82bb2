#include "pictures/note_mark.h"

#include <algorithm>

namespace zephyra {

NoteRange noteRange(const std::vector<NoteMark>& notes) {
    const auto [low, high] =
        std::minmax_element(notes.begin(), notes.end(), [](const NoteMark& a, const NoteMark& b) {
            return a.number < b.number;
        });
    return {low->number, high->number};
}

} // namespace zephyra
