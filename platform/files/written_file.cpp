#include "platform/files/written_file.h"

#include "platform/files/file_calls.h"

#include <algorithm>
#include <fcntl.h>

namespace zephyra {

std::error_code WrittenFile::open(const std::filesystem::path& path) {
    path_ = path;
    position_ = size_ = 0;
    file_.emplace(path, O_RDWR | O_CREAT | O_TRUNC, error_);
    return error_;
}

/// Keeps the first failure; true while there is none.
bool WrittenFile::note(std::error_code error) {
    if (!error_) error_ = error;
    return !error_;
}

bool WrittenFile::write(std::span<const std::byte> bytes) {
    if (!note(file_calls::writeAt(file_->descriptor(), position_, bytes, path_))) return false;
    position_ += bytes.size();
    size_ = std::max(size_, position_);
    return true;
}

std::size_t WrittenFile::read(std::span<std::byte> bytes) {
    std::error_code error;
    const std::size_t count =
        file_calls::readAt(file_->descriptor(), position_, bytes, path_, error);
    note(error);
    position_ += count;
    return count;
}

bool WrittenFile::cut(std::uint64_t size) {
    if (!note(file_calls::resize(file_->descriptor(), size, path_))) return false;
    size_ = size;
    return true;
}

std::error_code WrittenFile::close() {
    if (file_) note(file_->close());
    return error_;
}

} // namespace zephyra
