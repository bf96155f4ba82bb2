// FileCopy: a copy of a file, made piece by piece, that appears complete or not at all.
#pragma once

#include "platform/files/atomic_file.h"
#include "platform/files/file_bytes.h"
#include "platform/text/result.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <system_error>

namespace zephyra {

/// Order of calls: open, write, then replace or create, which are quick: all bytes are on disk by
/// then, so that a lock is needed for these alone. Failures are one line that names the file.
/// However long that is, one piece of it is in memory. Not copyable; MAIN or WORKER.
class FileCopy {
public:
    /// Told the share that is copied, 0 to 1, before each piece; false ends it.
    using Progress = std::function<bool(double share)>;
    static constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

    /// An ordinary file to read, of which no more is copied than it has now.
    Result<void> open(const std::filesystem::path& source);
    /// Copies it to a private file beside target.
    Result<void> write(const std::filesystem::path& target, const Progress& progress = {});
    /// Gives the copy its name, over what has it: true.
    Result<bool> replace();
    /// The same where nothing stands yet; false, and nothing changed, when the name is taken.
    Result<bool> create();

private:
    /// Of either file.
    struct Errors {
        std::error_code reading, writing;
    };
    Errors copyPieces(const Progress& progress);

    std::optional<FileBytes> source_;
    std::filesystem::path target_;
    AtomicFile file_;
};

} // namespace zephyra
