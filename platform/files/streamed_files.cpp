#include "platform/files/streamed_files.h"

#include "platform/files/file_calls.h"
#include "platform/files/open_file.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPiece = std::size_t{1} << 18; // bytes read at a time
constexpr int kPollMilliseconds = 100;               // how late the end of the wish is noticed

/// The open descriptor that name means; none for a file's own name.
std::optional<int> descriptorOf(const fs::path& name) {
    const std::string& text = name.native();
    if (text == "-" || text == "/dev/stdin") return STDIN_FILENO;
    return numberedDescriptor(name);
}

std::error_code waitFor(int descriptor, const std::function<bool()>& goesOn) {
    pollfd watched = {descriptor, POLLIN, 0};
    for (;;) {
        if (goesOn && !goesOn()) return std::make_error_code(std::errc::operation_canceled);
        const int ready = ::poll(&watched, 1, kPollMilliseconds);
        if (ready > 0) return {};
        if (ready < 0 && errno != EINTR) return {errno, std::generic_category()};
    }
}

/// A stream on its way into a file.
class Spool {
public:
    Spool(const fs::path& name, const StreamedFiles::Reading& reading)
        : name_(name), reading_(reading), head_(reading.headBytes) {}

    Result<void> open();
    Result<void> copy();
    UnnamedFile takeFile() { return std::move(file_); }

private:
    int source() const { return pipe_ ? pipe_->descriptor() : *open_; }
    Failure failure(const std::string& reason) const {
        return {shownFile(inputTitle(name_)) + " " + reason};
    }
    Failure notRead(std::error_code error) const;
    Failure notKept(std::error_code error) const {
        return failure("cannot be kept in " + temporaryFolder().string() + ": " + error.message() +
                       "; make room, or name another folder by TMPDIR");
    }
    bool isWanted(std::span<const std::byte> piece, bool isAll);

    const fs::path& name_;
    const StreamedFiles::Reading& reading_;
    const std::optional<int> open_ = descriptorOf(name_); // as it was handed to this process
    std::optional<OpenFile> pipe_;                        // else
    UnnamedFile file_;
    std::vector<std::byte> head_; // what isWanted waits for
    std::size_t headBytes_ = 0;   // of which so many came
    bool asked_ = false;
};

Failure Spool::notRead(std::error_code error) const {
    if (error == std::errc::operation_canceled)
        return failure("was not read to its end: interrupted");
    if (error == std::errc::bad_file_descriptor) return failure("is closed; send it something");
    return failure("cannot be read: " + error.message());
}

Result<void> Spool::open() {
    std::error_code error;
    struct stat facts {};
    // What is open is not opened again, which would miss the end of a writer that has gone. Without
    // a writer the opening of a pipe would wait.
    if (open_)
        error = file_calls::facts(*open_, name_, facts);
    else
        pipe_.emplace(name_, O_RDONLY | O_NONBLOCK, error);
    if (error) return notRead(error);
    if ((error = file_.open(temporaryFolder()))) return notKept(error);
    return {};
}

bool Spool::isWanted(std::span<const std::byte> piece, bool isAll) {
    if (asked_ || !reading_.isWanted) return true;
    const std::size_t count = std::min(piece.size(), head_.size() - headBytes_);
    std::copy_n(piece.begin(), count, head_.begin() + static_cast<std::ptrdiff_t>(headBytes_));
    headBytes_ += count;
    asked_ = isAll || headBytes_ == head_.size();
    return !asked_ || reading_.isWanted(std::span(head_).first(headBytes_));
}

Result<void> Spool::copy() {
    std::vector<std::byte> piece(kPiece);
    for (std::uint64_t total = 0;;) {
        std::error_code error = waitFor(source(), reading_.goesOn);
        std::size_t got = 0;
        if (!error) got = file_calls::readSome(source(), piece, name_, error);
        if (error == std::errc::resource_unavailable_try_again) continue; // another reader had it
        if (error) return notRead(error);
        const std::span<const std::byte> bytes = std::span(piece).first(got);
        total += got;
        if (total > reading_.mostBytes)
            return failure("holds more than " + std::to_string(reading_.mostBytes >> 20) +
                           " MiB; a shorter one is needed");
        if ((error = file_.write(bytes))) return notKept(error);
        if (!isWanted(bytes, got == 0) || got == 0) return {};
    }
}

} // namespace

bool isStandardInput(const fs::path& name) {
    return descriptorOf(name) == STDIN_FILENO;
}

bool isTerminal(const fs::path& name) {
    return isStandardInput(name) && ::isatty(STDIN_FILENO);
}

bool isStream(const fs::path& name) {
    struct stat facts {};
    if (isStandardInput(name)) return true;
    if (file_calls::facts(name, facts)) return false;
    return S_ISFIFO(facts.st_mode) || (S_ISSOCK(facts.st_mode) && descriptorOf(name));
}

std::string streamIdentity(const fs::path& name) {
    struct stat facts {};
    const auto open = descriptorOf(name);
    if (open ? file_calls::facts(*open, name, facts) : file_calls::facts(name, facts))
        return name.string(); // reading it will say what is wrong
    return std::to_string(facts.st_dev) + ":" + std::to_string(facts.st_ino);
}

std::string inputTitle(const fs::path& name) {
    return isStandardInput(name) ? "standard input" : name.string();
}

std::string inputStem(const fs::path& name) {
    if (isStandardInput(name)) return "stdin";
    return descriptorOf(name) ? "pipe" : name.stem().string();
}

Result<void> StreamedFiles::take(const fs::path& name, const Reading& reading) {
    if (taken_.contains(name)) return {};
    Spool spool(name, reading);
    if (auto opened = spool.open(); !opened) return opened;
    if (auto copied = spool.copy(); !copied) return copied;
    taken_.emplace(name, spool.takeFile());
    return {};
}

std::variant<FileBytes, NotOpened> StreamedFiles::open(const fs::path& path) const {
    const auto taken = taken_.find(path);
    if (taken == taken_.end()) return FileBytes::open(path);
    return FileBytes::open("/proc/self/fd/" + std::to_string(taken->second.descriptor()),
                           inputTitle(path));
}

} // namespace zephyra
