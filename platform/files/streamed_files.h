// StreamedFiles: what came through standard input and pipes, kept so that it is read like a file.
#pragma once

#include "platform/files/file_bytes.h"
#include "platform/files/unnamed_file.h"
#include "platform/text/result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <variant>

namespace zephyra {

/// Whether a typed name stands for standard input: "-", and what Linux calls it.
bool isStandardInput(const std::filesystem::path& name);

/// Whether it does, and is a terminal: somebody would have to type it.
bool isTerminal(const std::filesystem::path& name);

/// Whether what has that name can be read only once: standard input, or a pipe. MAIN or WORKER.
bool isStream(const std::filesystem::path& name);

/// The same for all names of one stream, and for no other. MAIN or WORKER.
std::string streamIdentity(const std::filesystem::path& name);

/// "standard input", else the name as it is: for messages.
std::string inputTitle(const std::filesystem::path& name);

/// What files that are made of it are named after: the name without folder and extension, "stdin",
/// or "pipe" for what a shell numbers.
std::string inputStem(const std::filesystem::path& name);

/// Readers want to seek, measure and read twice, which no pipe can: it is copied to a file without
/// a name in temporaryFolder(), which is gone with this whatever happens. Its readers must not
/// outlive this; processes that are forked may use it. One thread at a time, MAIN or WORKER.
class StreamedFiles {
public:
    struct Reading {
        std::uint64_t mostBytes;
        /// Asked several times a second, also while nothing comes; false ends it with a failure.
        std::function<bool()> goesOn = {};
        /// Asked once, with the first bytes (headBytes, or fewer if that is all): false leaves the
        /// rest unread, which may be endless, for a reader that will refuse it.
        std::function<bool(std::span<const std::byte> head)> isWanted = {};
        std::size_t headBytes = 0;
    };

    /// Reads all that comes by that name, unless it was taken before; waits for who is to write.
    /// Fails with one line.
    Result<void> take(const std::filesystem::path& name, const Reading& reading);

    /// What was taken by that name, called inputTitle; else the file at path, as FileBytes.
    std::variant<FileBytes, NotOpened> open(const std::filesystem::path& path) const;

private:
    std::map<std::filesystem::path, UnnamedFile> taken_; // by typed name
};

} // namespace zephyra
