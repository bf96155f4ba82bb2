#include "platform/files/file_bytes.h"

#include "platform/files/file_calls.h"

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <new>
#include <optional>
#include <sys/stat.h>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// By the clock that stamps files.
std::int64_t nanosecondsNow() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
}

} // namespace

FileBytes::FileBytes(OpenFile file, fs::path name, const FileStamp& stamp, std::int64_t openedAt)
    : file_(std::move(file)), name_(std::move(name)), stamp_(stamp), openedAt_(openedAt) {}

std::variant<FileBytes, NotOpened> FileBytes::open(const fs::path& path, const fs::path& name) {
    using enum NotOpened::Why;
    std::error_code error;
    struct stat facts {};
    if ((error = file_calls::facts(path, facts))) return NotOpened{missing, error};
    if (S_ISDIR(facts.st_mode)) return NotOpened{folder};
    if (!S_ISREG(facts.st_mode)) return NotOpened{special};
    OpenFile file(path, O_RDONLY | O_NONBLOCK, error); // a pipe may have taken its place since
    if (error) return NotOpened{refused, error};
    const std::int64_t now = nanosecondsNow();
    const auto stamp = fileStamp(file.descriptor(), path);
    if (!stamp) return NotOpened{special};
    return FileBytes(std::move(file), name, *stamp, now);
}

std::error_code FileBytes::load() try {
    if (isLoaded_ || stamp_.bytes > kMostInMemory) return {};
    std::vector<std::byte> bytes(stamp_.bytes);
    std::error_code error;
    bytes.resize(file_calls::read(file_.descriptor(), bytes, path(), error));
    if (error) return error;
    bytes_ = std::move(bytes);
    isLoaded_ = true;
    static_cast<void>(file_.close()); // nothing was written
    return {};
} catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
}

std::size_t FileBytes::readAt(std::uint64_t offset, std::span<std::byte> bytes,
                              std::error_code& error) const {
    error.clear();
    if (!isLoaded_) return file_calls::readAt(file_.descriptor(), offset, bytes, path(), error);
    if (offset >= bytes_.size()) return 0;
    const std::size_t count = std::min(bytes.size(), bytes_.size() - std::size_t{offset});
    std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(offset), count, bytes.begin());
    return count;
}

} // namespace zephyra
