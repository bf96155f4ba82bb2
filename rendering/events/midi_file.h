// MidiFile: the messages of a standard MIDI file, by time.
#pragma once

#include "platform/files/streamed_files.h"
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

struct MidiFile {
    std::vector<TimedMidi> messages = {};  ///< of all tracks in time's order
    std::vector<std::string> notices = {}; ///< what was odd in the file, a line each, with its name
};

/// With a tempo (beats per minute, above 0) the file's beats are played at it, else at the tempos
/// that the file itself gives, 120 until the first. Fails for what is no MIDI file; where is what
/// the failure and the notices call the bytes. MAIN.
Result<MidiFile> parseMidi(std::string_view bytes, std::optional<double> tempo,
                           const std::string& where);

/// The same of a file, or of what streams took by that name, of at most 16 MiB.
Result<MidiFile> readMidiFile(const std::filesystem::path& path, std::optional<double> tempo,
                              const StreamedFiles& streams = {});

} // namespace zephyra
