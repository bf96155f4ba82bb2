#include "platform/files/byte_stream.h"

#include "platform/files/file_calls.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr int kWaitMilliseconds = 100; // how late it is noticed that it does not go on

/// The descriptor of this process that path means.
std::optional<int> namedDescriptor(const fs::path& path) {
    const std::string& name = path.native();
    if (name == "-" || name == "/dev/stdout") return STDOUT_FILENO;
    if (name == "/dev/stderr") return STDERR_FILENO;
    return numberedDescriptor(path);
}

} // namespace

bool ByteStream::isNamedBy(const fs::path& path) {
    if (namedDescriptor(path)) return true;
    std::error_code error;
    const fs::file_status status = file_calls::status(path, error);
    return fs::is_fifo(status) || fs::is_character_file(status);
}

bool ByteStream::isStandardOutput(const fs::path& path) {
    return namedDescriptor(path) == STDOUT_FILENO;
}

bool ByteStream::isTerminal(const fs::path& path) {
    if (const auto descriptor = namedDescriptor(path)) return ::isatty(*descriptor) == 1;
    std::error_code error;
    if (!fs::is_character_file(file_calls::status(path, error))) return false;
    const OpenFile device(path, O_WRONLY | O_NONBLOCK | O_NOCTTY, error);
    return !error && ::isatty(device.descriptor()) == 1;
}

/// A pipe that nobody reads from is not there yet.
std::error_code ByteStream::openPipe() {
    std::error_code error;
    for (;;) {
        file_.emplace(path_, O_WRONLY | O_NONBLOCK | O_NOCTTY, error);
        if (error != std::errc::no_such_device_or_address) break;
        if (!goesOn()) return std::make_error_code(std::errc::operation_canceled);
        ::poll(nullptr, 0, kWaitMilliseconds);
    }
    if (error) return error;
    const int flags = ::fcntl(file_->descriptor(), F_GETFL);
    ::fcntl(file_->descriptor(), F_SETFL, flags & ~O_NONBLOCK);
    return {};
}

std::error_code ByteStream::open(const fs::path& path, GoesOn goesOn) {
    path_ = path;
    goesOn_ = std::move(goesOn);
    file_.reset();
    std::error_code error;
    if (const auto named = namedDescriptor(path))
        file_ = OpenFile::duplicateOf(*named, path, error);
    else
        error = openPipe();
    struct stat facts {};
    if (!error) error = file_calls::facts(file_->descriptor(), path, facts);
    mayWait_ = !S_ISREG(facts.st_mode);
    return error;
}

/// Until a few bytes can be written without a wait, or an error shows when they are.
std::error_code ByteStream::waitForRoom() const {
    pollfd watched{file_->descriptor(), POLLOUT, 0};
    while (goesOn())
        if (const int ready = ::poll(&watched, 1, kWaitMilliseconds);
            ready > 0 || (ready < 0 && errno != EINTR))
            return {};
    return std::make_error_code(std::errc::operation_canceled);
}

std::error_code ByteStream::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        // What a pipe with any room takes at one go.
        const std::size_t count =
            mayWait_ ? std::min<std::size_t>(bytes.size(), PIPE_BUF) : bytes.size();
        if (mayWait_)
            if (const std::error_code error = waitForRoom()) return error;
        const auto part = bytes.first(count);
        if (const auto error = file_calls::write(file_->descriptor(), part, path_)) return error;
        bytes = bytes.subspan(count);
    }
    return {};
}

std::error_code ByteStream::close() {
    return file_ ? file_->close() : std::error_code();
}

} // namespace zephyra
