#include "platform/files/file_lock.h"

#include "platform/files/file_calls.h"

#include <chrono>
#include <fcntl.h>
#include <thread>
#include <utility>

namespace zephyra {

std::string lockProblem(const std::filesystem::path& sideFile, std::error_code error) {
    const std::string lock = sideFile.string();
    if (error == std::errc::timed_out)
        return "another program holds " + lock + "; try again when it is done";
    if (error == std::errc::operation_canceled)
        return "interrupted while another program held " + lock;
    return error.message();
}

FileLock::~FileLock() {
    unlock();
}

std::error_code FileLock::lock(const std::filesystem::path& sideFile, const LockWait& wait) {
    unlock();
    std::error_code error;
    const int descriptor = file_calls::open(sideFile, O_RDWR | O_CREAT, error);
    if (error) return error;
    path_ = sideFile;
    descriptor_ = descriptor;
    if ((error = take(wait))) unlock();
    return error;
}

/// By trying again and again: a wait inside the system knows no end but a signal.
std::error_code FileLock::take(const LockWait& wait) {
    using std::chrono::steady_clock;
    const auto until = steady_clock::now() + std::chrono::duration<double>(wait.seconds);
    for (;;) {
        const std::error_code error = file_calls::tryLock(descriptor_, path_);
        if (error != std::errc::operation_would_block) return error;
        if (wait.goesOn && !wait.goesOn())
            return std::make_error_code(std::errc::operation_canceled);
        if (steady_clock::now() >= until) return std::make_error_code(std::errc::timed_out);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void FileLock::unlock() noexcept {
    if (!isLocked()) return;
    file_calls::unlock(descriptor_);
    static_cast<void>(file_calls::close(std::exchange(descriptor_, -1), path_));
}

} // namespace zephyra
