// FileLock: keeps other processes and instances out while a file is read, changed and written.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

namespace zephyra {

/// How long somebody waits for a lock that another holds.
struct LockWait {
    double seconds = 5.0; ///< at most; 0: one try
    /// Asked about every millisecond while it waits, on the waiting thread; false ends the wait at
    /// once. Empty: never.
    std::function<bool()> goesOn = {};
};

/// Why sideFile's lock is not held, as part of a line that names what failed. Any thread but
/// RENDER.
std::string lockProblem(const std::filesystem::path& sideFile, std::error_code error);

/// An exclusive lock of a side file, held while this lives. The side file is made when missing and
/// stays, because removing it would let two holders in. Not copyable. MAIN or WORKER.
class FileLock {
public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Waits until nobody else holds it; a lock held before is let go first. Fails with
    /// std::errc::timed_out, and with std::errc::operation_canceled when wait.goesOn says so.
    std::error_code lock(const std::filesystem::path& sideFile, const LockWait& wait = {});
    void unlock() noexcept;
    bool isLocked() const noexcept { return descriptor_ >= 0; }

private:
    std::error_code take(const LockWait& wait);

    int descriptor_ = -1;
    std::filesystem::path path_;
};

} // namespace zephyra
