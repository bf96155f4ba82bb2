#include "platform/files/unnamed_file.h"

#include "platform/files/abandoned_folders.h"
#include "platform/files/file_calls.h"

#include <cstdlib>
#include <fcntl.h>
#include <string>

namespace zephyra {

std::error_code UnnamedFile::open(const std::filesystem::path& folder) {
    file_.reset();
    std::string made = (folder / kPrivateFolder).string();
    if (const std::error_code error = file_calls::makeUniqueFolder(made)) return error;
    std::error_code error;
    file_.emplace(std::filesystem::path(made) / "unnamed", O_RDWR | O_CREAT | O_EXCL, error);
    if (!error) error = file_calls::remove(file_->path());
    if (!error) error = file_calls::remove(made);
    if (error) removePrivateFolder(made);
    return error;
}

std::error_code UnnamedFile::write(std::span<const std::byte> bytes) {
    return file_calls::write(file_->descriptor(), bytes, file_->path());
}

std::size_t UnnamedFile::readAt(std::uint64_t offset, std::span<std::byte> bytes,
                                std::error_code& error) const {
    return file_calls::readAt(file_->descriptor(), offset, bytes, file_->path(), error);
}

std::filesystem::path temporaryFolder() {
    const char* const chosen = std::getenv("TMPDIR");
    return chosen && *chosen ? chosen : "/var/tmp";
}

} // namespace zephyra
