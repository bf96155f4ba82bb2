// readTake and TakeFile: a recorded scan as a text file.
#pragma once

#include "platform/files/atomic_file.h"
#include "platform/files/streamed_files.h"
#include "platform/text/result.h"
#include "stream/scrub_recorder.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

inline constexpr std::size_t kLeastTakePoints = 2, kMostTakePoints = ScrubRecorder::kPoints;

/// Reads positions of the scan, one a line, fractions of the sound from 0 to 1. Empty lines and
/// those that begin with # are skipped, as is a first line "position". Failures name the line;
/// where is what they call the text.
Result<std::vector<float>> parseTake(std::string_view text, const std::string& where);

/// The same of a file, or of what streams took by that name, of at most 16 MiB.
Result<std::vector<float>> readTake(const std::filesystem::path& path,
                                    const StreamedFiles& streams = {});

/// The text that parseTake reads back to the same positions.
std::string takeText(std::span<const float> positions);

/// A take that appears under its name complete or not at all. Order of calls: open (before the work
/// that fills it, so that a wrong name is told early), save. MAIN.
class TakeFile {
public:
    Result<void> open(const std::filesystem::path& path);
    Result<void> save(std::span<const float> positions);

private:
    std::filesystem::path path_;
    AtomicFile file_;
};

} // namespace zephyra
