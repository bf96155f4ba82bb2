#include "stream/echo_sync.h"

#include "controls/note_values.h"

#include <algorithm>

namespace zephyra {

namespace {

// Beats per second while the tempo says nothing: one a minute.
constexpr double kRestingBeat = 0.016666666666666666;

} // namespace

double syncedEchoSeconds(double beatsPerMinute, std::size_t index) noexcept {
    const double beatsPerSecond = beatsPerMinute > 0 ? 1 / (60 / beatsPerMinute) : kRestingBeat;
    return 1 /
           (beatsPerSecond * kNoteValues[std::min(index, kNoteValues.size() - 1)].repeatsPerBeat);
}

} // namespace zephyra
