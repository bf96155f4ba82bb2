// readWholeFile and replaceFile: a file's bytes at once, through the calls that tests can let fail.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <vector>

namespace zephyra {

struct WholeFile {
    std::vector<std::byte> bytes;
    FileStamp stamp; ///< of the file that was read, even if another has taken its name since
};

/// At most `most` bytes of an ordinary file, or of what streams took by that name; any other device
/// or pipe is not even opened. Fails with one line that begins with the path and says what would be
/// right. Any thread but RENDER.
Result<WholeFile> readWholeFile(const std::filesystem::path& path, std::size_t most,
                                const StreamedFiles& streams = {});

/// Replaces the file at path, completely or not at all. Fails with one line that names it. Any
/// thread but RENDER.
Result<void> replaceFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

/// The same where nothing stands yet, also when somebody else makes a file of that name meanwhile:
/// false, and nothing changed, when the name is taken.
Result<bool> createFile(const std::filesystem::path& path, std::span<const std::byte> bytes);

} // namespace zephyra
