// ByteStream: a pipe, a device or a descriptor from outside, written from beginning to end.
#pragma once

#include "platform/files/open_file.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <system_error>

namespace zephyra {

/// Order of calls: open, write as often as needed, close. Who reads may make every call wait. Not
/// copyable; MAIN or WORKER.
class ByteStream {
public:
    /// Asked a few times a second while a call waits; false ends it with
    /// std::errc::operation_canceled.
    using GoesOn = std::function<bool()>;

    /// Whether path is "-", which stands for standard output, /dev/stdout, /dev/stderr or
    /// /dev/fd/N, or an existing pipe or character device: what is written into, never replaced.
    static bool isNamedBy(const std::filesystem::path& path);
    /// Whether path names standard output.
    static bool isStandardOutput(const std::filesystem::path& path);
    /// Whether what path names is a terminal.
    static bool isTerminal(const std::filesystem::path& path);

    /// Opens what path names; of a pipe once somebody reads from it.
    std::error_code open(const std::filesystem::path& path, GoesOn goesOn = {});

    /// All of bytes, or an error: std::errc::broken_pipe when nobody reads any more.
    std::error_code write(std::span<const std::byte> bytes);

    std::error_code close();

private:
    bool goesOn() const { return !goesOn_ || goesOn_(); }
    std::error_code openPipe();
    std::error_code waitForRoom() const;

    std::optional<OpenFile> file_;
    std::filesystem::path path_;
    GoesOn goesOn_;
    bool mayWait_ = false; // it is no ordinary file
};

} // namespace zephyra
