// FileBytes: an ordinary file opened for reading, in memory at once where it is small.
#pragma once

#include "platform/files/file_stamp.h"
#include "platform/files/open_file.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>
#include <variant>
#include <vector>

namespace zephyra {

/// Why a file could not be opened for reading.
struct NotOpened {
    enum class Why {
        missing, ///< it is not there, or cannot be looked at; error tells why
        folder,
        special, ///< a device or pipe: opening one may wait for ever
        refused, ///< error tells why
    };
    Why why = Why::missing;
    std::error_code error = {};
};

/// One version of a file, read as often as anybody wants by one open and, once it is loaded, one
/// read. Used by one thread at a time, MAIN or WORKER.
class FileBytes {
public:
    /// What load() brings into memory; larger files are read piece by piece.
    static constexpr std::uint64_t kMostInMemory = std::uint64_t{64} << 20;

    /// name: what people call it, where that is not path.
    static std::variant<FileBytes, NotOpened> open(const std::filesystem::path& path,
                                                   const std::filesystem::path& name = {});

    /// By which it can be opened again.
    const std::filesystem::path& path() const noexcept { return file_.path(); }
    /// For messages, and for what an extension tells.
    const std::filesystem::path& name() const noexcept { return name_.empty() ? path() : name_; }
    /// Of the file as it was opened, even if another has taken its name since.
    const FileStamp& stamp() const noexcept { return stamp_; }
    /// See FileStamp::isSettledAt, at the time of opening.
    bool isSettled() const noexcept { return stamp_.isSettledAt(openedAt_); }
    /// As many as it had when it was opened, fewer where it was cut before it was loaded.
    std::uint64_t size() const noexcept { return isLoaded_ ? bytes_.size() : stamp_.bytes; }

    /// Reads it all and closes it, if it has at most kMostInMemory bytes; one that cannot be loaded
    /// stays open.
    std::error_code load();
    /// Everything, once it is loaded.
    std::span<const std::byte> loaded() const noexcept { return bytes_; }
    bool isLoaded() const noexcept { return isLoaded_; }

    /// Stores as many bytes from offset on as there are, at most those of bytes, and answers how
    /// many.
    std::size_t readAt(std::uint64_t offset, std::span<std::byte> bytes,
                       std::error_code& error) const;

private:
    FileBytes(OpenFile file, std::filesystem::path name, const FileStamp& stamp,
              std::int64_t openedAt);

    OpenFile file_;
    std::filesystem::path name_; // empty: the file's path
    FileStamp stamp_;
    std::int64_t openedAt_; // nanoseconds since 1970
    bool isLoaded_ = false;
    std::vector<std::byte> bytes_;
};

} // namespace zephyra
