// FileLock: keeps other processes and instances out while a file is read, changed and written.
#pragma once

#include <filesystem>
#include <system_error>

namespace zephyra {

/// An exclusive lock of a side file, held while this lives. The side file is made when missing and
/// stays, because removing it would let two holders in. Not copyable. MAIN or WORKER.
class FileLock {
public:
    FileLock() = default;
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Waits until nobody else holds it; a lock held before is let go first.
    std::error_code lock(const std::filesystem::path& sideFile);
    void unlock() noexcept;
    bool isLocked() const noexcept { return descriptor_ >= 0; }

private:
    int descriptor_ = -1;
    std::filesystem::path path_;
};

} // namespace zephyra
