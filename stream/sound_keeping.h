// reserveName and keepSoundAsFile: how a sound that stands in no file gets one of its own.
#pragma once

#include "platform/text/result.h"
#include "stream/stream_controller.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Which name is taken when it is free.
enum class FirstName {
    plain,    ///< "base.wav", then "base 1.wav"
    numbered, ///< "base 1.wav"
};

/// An empty sound file: makes the folder when missing and the file here and now, so that no other
/// program takes the name meanwhile; numbers go on behind those in use. base must be a file name.
/// Fails with one line that names the file or folder. MAIN or WORKER.
Result<std::filesystem::path> reserveName(const std::filesystem::path& folder,
                                          const std::string& base, FirstName first);

/// A snapshot can only name files; what stands in none is to be written before one is made. Writes
/// a sample that came out of a state without its file, and what live input captured once LIVE is
/// off, as 32-bit float WAVs into the shared folder, under a free name made from the lost file's or
/// "Rec N", and tells every instance. What plays goes on: the sample is the same, a captured sound
/// becomes a sample of equal length and frames (silence where nothing was heard yet) that Normalize
/// leaves alone. Nothing happens for any other sound. Fails with one line that names the file,
/// and with nothing changed. MAIN.
Result<void> keepSoundAsFile(Instance& instance, MOK_SCRUB_GRANULATOR& stream);

} // namespace zephyra
