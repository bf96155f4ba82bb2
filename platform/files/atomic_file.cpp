#include "platform/files/atomic_file.h"

#include "platform/files/abandoned_folders.h"
#include "platform/files/file_calls.h"
#include "platform/files/open_file.h"

#include <fcntl.h>
#include <string>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

std::error_code flushToDisk(const fs::path& path) {
    std::error_code error;
    const int file = file_calls::open(path, O_RDONLY, error);
    if (error) return error;
    error = file_calls::flush(file, path);
    const std::error_code closing = file_calls::close(file, path);
    return error ? error : closing;
}

/// Only an ordinary file that may be written to is replaced.
std::error_code checkReplaceable(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = file_calls::status(target, error);
    if (status.type() == fs::file_type::not_found) return {};
    if (error) return error;
    if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
    if (!fs::is_regular_file(status)) return std::make_error_code(std::errc::invalid_argument);
    return file_calls::mayWrite(target);
}

/// Gives file the permissions of target, if that exists. File systems without permissions show the
/// same for both.
std::error_code takePermissions(const fs::path& file, const fs::path& target) {
    std::error_code error;
    const fs::file_status old = file_calls::status(target, error);
    if (old.type() == fs::file_type::not_found) return {};
    if (error) return error;
    const fs::file_status fresh = file_calls::status(file, error);
    if (error || fresh.permissions() == old.permissions()) return error;
    return file_calls::permissions(file, old.permissions());
}

} // namespace

AtomicFile::AtomicFile(AtomicFile&& other) noexcept
    : target_(std::exchange(other.target_, {})), path_(std::exchange(other.path_, {})) {}

AtomicFile& AtomicFile::operator=(AtomicFile&& other) noexcept {
    if (this == &other) return *this;
    abandon();
    target_ = std::exchange(other.target_, {});
    path_ = std::exchange(other.path_, {});
    return *this;
}

std::error_code AtomicFile::open(const fs::path& target) {
    abandon();
    if (target.empty()) return std::make_error_code(std::errc::no_such_file_or_directory);
    if (!target.has_filename()) return std::make_error_code(std::errc::is_a_directory);
    std::error_code error;
    fs::path resolved = file_calls::resolved(target, error);
    if (error) return error;
    if (const std::error_code refused = checkReplaceable(resolved)) return refused;

    removeAbandonedFolders(resolved.parent_path());
    std::string folder = (resolved.parent_path() / kPrivateFolder).string();
    if ((error = file_calls::makeUniqueFolder(folder))) return error;
    path_ = fs::path(folder) / resolved.filename();
    target_ = std::move(resolved);
    return {};
}

std::error_code AtomicFile::write(std::span<const std::byte> bytes) {
    std::error_code error;
    OpenFile file(path_, O_WRONLY | O_CREAT | O_EXCL, error);
    if (!error) error = file_calls::write(file.descriptor(), bytes, path_);
    const std::error_code closing = file.close();
    return error ? error : closing;
}

std::error_code AtomicFile::renameAll(Target target) {
    const fs::path folder = path_.parent_path();
    std::error_code error = takePermissions(path_, target_);
    if (error || (error = flushToDisk(path_))) return error;

    for (const std::string& name : file_calls::list(folder, error)) {
        if (name == path_.filename()) continue;
        if ((error = flushToDisk(folder / name))) return error;
        error = file_calls::rename(folder / name, target_.parent_path() / name);
        if (error) return error;
    }
    if (error) return error;
    error = target == Target::created ? file_calls::renameNew(path_, target_)
                                      : file_calls::rename(path_, target_);
    // Makes the new name last through a power cut; some file systems cannot flush a folder.
    if (!error) static_cast<void>(flushToDisk(target_.parent_path()));
    return error;
}

std::error_code AtomicFile::finish(Target target) {
    if (path_.empty()) return std::make_error_code(std::errc::bad_file_descriptor);
    const std::error_code error = renameAll(target);
    abandon();
    return error;
}

void AtomicFile::abandon() noexcept {
    if (path_.empty()) return;
    removePrivateFolder(path_.parent_path());
    path_.clear();
    target_.clear();
}

} // namespace zephyra
