// cleanMidi: of a MIDI file what is played, as a file whose every byte a library may trust.
#pragma once

#include "platform/text/result.h"

#include <string>
#include <string_view>

namespace zephyra {

/// A file of the same tracks with channel messages and tempos only, each with its own status byte.
/// Fails, saying what is wrong, unless the bytes begin with a header of beats (not film frames) and
/// each announced track is there, holds whole events only, ends with its end mark, and lasts less
/// than 2^28 ticks. Any thread but RENDER.
Result<std::string> cleanMidi(std::string_view bytes);

} // namespace zephyra
