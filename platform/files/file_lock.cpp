#include "platform/files/file_lock.h"

#include "platform/files/file_calls.h"

#include <fcntl.h>
#include <utility>

namespace zephyra {

FileLock::~FileLock() {
    unlock();
}

std::error_code FileLock::lock(const std::filesystem::path& sideFile) {
    unlock();
    std::error_code error;
    const int descriptor = file_calls::open(sideFile, O_RDWR | O_CREAT, error);
    if (error) return error;
    path_ = sideFile;
    descriptor_ = descriptor;
    if ((error = file_calls::lock(descriptor, sideFile))) unlock();
    return error;
}

void FileLock::unlock() noexcept {
    if (!isLocked()) return;
    file_calls::unlock(descriptor_);
    static_cast<void>(file_calls::close(std::exchange(descriptor_, -1), path_));
}

} // namespace zephyra
