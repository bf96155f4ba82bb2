// syncedEchoSeconds: a tempo-synced delay time, a note value in seconds.
#pragma once

#include <cstddef>

namespace zephyra {

/// Seconds between two repeats for the note value at index of kNoteValues (one beyond the
/// last counts as the last) at beatsPerMinute; a tempo that is not above 0 counts as one beat a
/// minute. Any thread.
double syncedEchoSeconds(double beatsPerMinute, std::size_t index) noexcept;

} // namespace zephyra
