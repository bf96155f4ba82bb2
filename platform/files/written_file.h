// WrittenFile: a new file that is written at any place and keeps the first failure.
#pragma once

#include "platform/files/open_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>

namespace zephyra {

/// For libraries that write through functions of ours, many of which drop failures: whatever they
/// say, the file is whole only where close() is without an error. One thread at a time, MAIN or
/// WORKER.
class WrittenFile {
public:
    /// Makes the file, or empties it.
    std::error_code open(const std::filesystem::path& path);

    /// Writes at the position and moves it; false after this or any earlier failure.
    bool write(std::span<const std::byte> bytes);
    /// Reads there as many bytes as there are, at most those of bytes, and moves the position.
    std::size_t read(std::span<std::byte> bytes);
    /// Cuts the file to size bytes; false after this or any earlier failure.
    bool cut(std::uint64_t size);

    /// Empty before it is opened.
    const std::filesystem::path& path() const noexcept { return path_; }

    /// In bytes from the beginning; may lie behind the end.
    void seek(std::uint64_t position) noexcept { position_ = position; }
    std::uint64_t position() const noexcept { return position_; }
    std::uint64_t size() const noexcept { return size_; }

    /// The first failure of all; none without one.
    std::error_code error() const noexcept { return error_; }
    /// The first failure, that of closing included. The file is closed in any case.
    std::error_code close();

private:
    bool note(std::error_code error);

    std::filesystem::path path_;
    std::optional<OpenFile> file_;
    std::uint64_t position_ = 0, size_ = 0;
    std::error_code error_;
};

} // namespace zephyra
