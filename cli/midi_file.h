// readMidiFile: the messages of a standard MIDI file, by time.
#pragma once

#include "platform/result.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace zephyra {

/// One channel message.
struct TimedMidi {
    double seconds; ///< of the output
    std::uint8_t length;
    std::array<std::uint8_t, 3> bytes; ///< status first
};

/// The channel messages of all tracks in time's order. With a tempo (beats per minute) the file's
/// beats are played at it, else at the tempos that the file itself gives. Fails for what is no MIDI
/// file or is larger than 16 MiB. MAIN.
Result<std::vector<TimedMidi>> readMidiFile(const std::filesystem::path& path,
                                            std::optional<double> tempo);

} // namespace zephyra
