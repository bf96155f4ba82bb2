// FileStamp: what tells one version of a file from another without reading it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace zephyra {

/// Plain data. Files are replaced by renaming here, so that a new version has another inode.
struct FileStamp {
    std::uint64_t device = 0, inode = 0;
    std::uint64_t bytes = 0;
    std::int64_t modified = 0; ///< nanoseconds since 1970
    bool operator==(const FileStamp&) const = default;
};

/// Nothing for a file that does not exist or cannot be looked at. Any thread but RENDER.
std::optional<FileStamp> fileStamp(const std::filesystem::path& path);

/// The same of the open file, which path names; nothing, too, unless it is an ordinary file.
std::optional<FileStamp> fileStamp(int descriptor, const std::filesystem::path& path);

} // namespace zephyra
