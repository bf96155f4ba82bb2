// MidiFile: the messages of a standard MIDI file, and its tempos and meters, by time.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

/// One channel message.
struct TimedMidi {
    double seconds; ///< of the output
    std::uint8_t length;
    std::array<std::uint8_t, 3> bytes; ///< status first
};

/// What the music goes on with from a time on.
struct TimedMusic {
    double seconds; ///< of the output
    double beats;   ///< the same in quarters
    double tempo;   ///< beats per minute
    std::optional<std::pair<int, int>> meter =
        {}; ///< beats of a bar and the value of one; none yet
};

struct MidiFile {
    std::vector<TimedMidi> messages = {};  ///< of all tracks in time's order
    std::vector<TimedMusic> music = {};    ///< in time's order, where the file's tempos hold
    std::vector<std::string> notices = {}; ///< what was odd in the file, a line each, with its name
};

/// Whether a tempo that was told holds throughout, or until the file's first one.
enum class ToldTempo : std::uint8_t { holds, begins };

/// With a tempo (beats per minute, above 0) that holds, the file's beats are played at it, else at
/// the tempos that the file itself gives, at the told one or 120 until the first. Fails for what is
/// no MIDI file; where is what the failure and the notices call the bytes. MAIN.
Result<MidiFile> parseMidi(std::string_view bytes, std::optional<double> tempo,
                           const std::string& where, ToldTempo told = ToldTempo::holds);

/// The same of a file, or of what streams took by that name, of at most 16 MiB.
Result<MidiFile> readMidiFile(const std::filesystem::path& path, std::optional<double> tempo,
                              const StreamedFiles& streams = {}, ToldTempo told = ToldTempo::holds);

} // namespace zephyra
