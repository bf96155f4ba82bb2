// keepSoundAsFile: gives a sound that only a state or the live buffer holds a file of its own.
#pragma once

#include "platform/text/result.h"
#include "stream/stream_controller.h"

namespace zephyra {

/// A snapshot can only name files; what stands in none is to be written before one is made. Writes
/// a sample that came out of a state without its file, and what live input captured once LIVE is
/// off, as 32-bit float WAVs into the shared folder, under a free name made from the lost file's or
/// "Rec N", and tells every instance. What plays goes on: the sample is the same, a captured sound
/// becomes a sample of equal length and frames (silence where nothing was heard yet) that Normalize
/// leaves alone. Nothing happens for any other sound. Fails with one line that names the file,
/// and with nothing changed. MAIN.
Result<void> keepSoundAsFile(Instance& instance, MOK_SCRUB_GRANULATOR& stream);

} // namespace zephyra
