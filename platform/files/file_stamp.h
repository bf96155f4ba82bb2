// FileStamp: what tells one version of a file from another without reading it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace zephyra {

/// Plain data. Files are replaced by renaming here, so that a new version has another inode. Other
/// programs write into them: that shows in the times, also where one is set back.
struct FileStamp {
    std::uint64_t device = 0, inode = 0;
    std::uint64_t bytes = 0;
    std::int64_t modified = 0; ///< the content, nanoseconds since 1970
    std::int64_t changed = 0;  ///< content, name or rights, likewise; nobody can set it

    /// Whether whatever is written from now on (nanoseconds since 1970) brings another stamp. The
    /// times of some file systems have steps of 2 s: a file that was written less than that ago
    /// may be written again within the step.
    bool isSettledAt(std::int64_t now) const noexcept {
        return now - modified >= std::int64_t{2'000'000'000};
    }
    bool operator==(const FileStamp&) const = default;
};

/// Nothing for a file that does not exist or cannot be looked at. Any thread but RENDER.
std::optional<FileStamp> fileStamp(const std::filesystem::path& path);

/// The same of the open file, which path names; nothing, too, unless it is an ordinary file.
std::optional<FileStamp> fileStamp(int descriptor, const std::filesystem::path& path);

} // namespace zephyra
