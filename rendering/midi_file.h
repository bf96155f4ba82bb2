// readMidiFile: the messages of a standard MIDI file, by time.
#pragma once

#include "platform/text/result.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
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
/// file; where is what the failure calls the bytes. MAIN.
Result<std::vector<TimedMidi>> parseMidi(std::string_view bytes, std::optional<double> tempo,
                                         const std::string& where);

/// The same of a file of at most 16 MiB.
Result<std::vector<TimedMidi>> readMidiFile(const std::filesystem::path& path,
                                            std::optional<double> tempo);

} // namespace zephyra
