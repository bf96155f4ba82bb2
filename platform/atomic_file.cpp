#include "platform/atomic_file.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code flushToDisk(const fs::path& path) {
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return lastError();
    const std::error_code error = ::fsync(file) == 0 ? std::error_code() : lastError();
    ::close(file);
    return error;
}

/// Only an ordinary file that may be written to is replaced.
std::error_code checkReplaceable(const fs::path& target) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (status.type() == fs::file_type::not_found) return {};
    if (error) return error;
    if (fs::is_directory(status)) return std::make_error_code(std::errc::is_a_directory);
    if (!fs::is_regular_file(status)) return std::make_error_code(std::errc::invalid_argument);
    const bool writable = ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) == 0;
    return writable ? std::error_code() : lastError();
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
    const fs::path absolute = fs::absolute(target, error);
    fs::path resolved = error ? absolute : fs::weakly_canonical(absolute, error);
    if (error) return error;
    if (const std::error_code refused = checkReplaceable(resolved)) return refused;

    std::string folder = (resolved.parent_path() / ".zephyra-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return lastError();
    path_ = fs::path(folder) / resolved.filename();
    target_ = std::move(resolved);
    return {};
}

std::error_code AtomicFile::renameAll() {
    const fs::path folder = path_.parent_path();
    std::error_code error;
    if (const auto old = fs::status(target_, error); fs::is_regular_file(old))
        fs::permissions(path_, old.permissions(), error);
    if ((error = flushToDisk(path_))) return error;

    fs::directory_iterator entry(folder, error);
    for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
        if (entry->path() == path_) continue;
        if ((error = flushToDisk(entry->path()))) return error;
        fs::rename(entry->path(), target_.parent_path() / entry->path().filename(), error);
        if (error) return error;
    }
    if (!error) fs::rename(path_, target_, error);
    // Makes the new name last through a power cut; some file systems cannot flush a folder.
    if (!error) static_cast<void>(flushToDisk(target_.parent_path()));
    return error;
}

std::error_code AtomicFile::commit() {
    if (path_.empty()) return std::make_error_code(std::errc::bad_file_descriptor);
    const std::error_code error = renameAll();
    abandon();
    return error;
}

void AtomicFile::abandon() noexcept {
    if (path_.empty()) return;
    std::error_code ignored;
    fs::remove_all(path_.parent_path(), ignored);
    path_.clear();
    target_.clear();
}

} // namespace zephyra
