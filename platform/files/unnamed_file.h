// UnnamedFile: bytes that are written once and read again, on a disk, under no name.
#pragma once

#include "platform/files/open_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>

namespace zephyra {

/// For what is too long for memory: the file is gone with this, however the process ends. Not
/// copyable; MAIN or WORKER.
class UnnamedFile {
public:
    /// Makes it on the disk of folder, which must be writable.
    std::error_code open(const std::filesystem::path& folder);

    /// Appends bytes.
    std::error_code write(std::span<const std::byte> bytes);

    /// Reads as many bytes from offset on as there are, at most those of bytes; how many.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> bytes,
                       std::error_code& error) const;

    /// By which other readers, and processes that are forked, see it; only once it was opened.
    int descriptor() const noexcept { return file_->descriptor(); }

private:
    std::optional<OpenFile> file_;
};

/// Where files may grow that nobody asked for by a name: $TMPDIR, else /var/tmp, which is on a
/// disk. Any thread but RENDER.
std::filesystem::path temporaryFolder();

} // namespace zephyra
