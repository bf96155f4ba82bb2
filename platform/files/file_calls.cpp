#include "platform/files/file_calls.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

FileCallGate fileCallGate;

std::error_code systemError(int number) {
    return {number, std::generic_category()};
}

/// What the gate answers.
int refusal(FileCall call, const fs::path& path) {
    return fileCallGate ? fileCallGate(call, path) : 0;
}

struct FolderCloser {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// The call's result, once no signal has interrupted it.
template <typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

/// Asks the gate, then calls what answers 0 or sets errno.
template <typename Call>
std::error_code attempt(FileCall kind, const fs::path& path, Call call) {
    if (const int refused = refusal(kind, path)) return systemError(refused);
    return uninterrupted(call) == 0 ? std::error_code() : systemError(errno);
}

/// Calls with the bytes that are still to come, and how many came before, until there are no more.
template <typename Call>
std::size_t readPieces(const fs::path& path, std::span<std::byte> bytes, std::error_code& error,
                       Call call) {
    error = systemError(refusal(FileCall::read, path));
    std::size_t count = 0;
    while (!error && count < bytes.size()) {
        const auto got = uninterrupted([&] { return call(bytes.subspan(count), count); });
        if (got < 0) error = systemError(errno);
        if (got <= 0) break;
        count += static_cast<std::size_t>(got);
    }
    return count;
}

/// The same for writing, until all are written.
template <typename Call>
std::error_code writePieces(const fs::path& path, std::span<const std::byte> bytes, Call call) {
    const int refused = refusal(FileCall::write, path);
    if (refused) bytes = bytes.first(bytes.size() / 2);
    for (std::size_t count = 0; count < bytes.size();) {
        const auto written = uninterrupted([&] { return call(bytes.subspan(count), count); });
        if (written < 0) return systemError(errno);
        count += static_cast<std::size_t>(written);
    }
    return systemError(refused);
}

} // namespace

FileCallGate setFileCallGate(FileCallGate gate) {
    return std::exchange(fileCallGate, std::move(gate));
}

namespace file_calls {

std::error_code makeFolder(const fs::path& path) {
    return attempt(FileCall::makeFolder, path, [&] { return ::mkdir(path.c_str(), 0777); });
}

std::error_code makeFolders(const fs::path& path) {
    if (path.empty()) return systemError(ENOENT);
    std::error_code ignored;
    if (fs::is_directory(file_calls::status(path, ignored))) return {};
    if (const fs::path parent = path.parent_path(); !parent.empty() && parent != path)
        if (const std::error_code error = makeFolders(parent)) return error;
    const std::error_code error = makeFolder(path);
    // Somebody else may have made it meanwhile; what is no folder keeps its error.
    if (error == std::errc::file_exists && fs::is_directory(file_calls::status(path, ignored)))
        return {};
    return error;
}

std::error_code makeUniqueFolder(std::string& name) {
    return attempt(FileCall::makeFolder, name, [&] { return ::mkdtemp(name.data()) ? 0 : -1; });
}

int open(const fs::path& path, int flags, std::error_code& error) {
    int descriptor = -1;
    error = attempt(FileCall::open, path, [&] {
        descriptor = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
        return descriptor < 0 ? -1 : 0;
    });
    return descriptor;
}

int duplicate(int descriptor, const fs::path& path, std::error_code& error) {
    int other = -1;
    error = attempt(FileCall::open, path, [&] {
        other = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
        return other < 0 ? -1 : 0;
    });
    return other;
}

std::error_code close(int descriptor, const fs::path& path) {
    const int refused = refusal(FileCall::close, path);
    // Never called again: the descriptor is gone also when a signal came in between.
    const int number = ::close(descriptor) == 0 || errno == EINTR ? 0 : errno;
    return systemError(refused ? refused : number);
}

std::error_code makeFile(const fs::path& path) {
    std::error_code error;
    const int file = open(path, O_WRONLY | O_CREAT | O_EXCL, error);
    if (!error && (error = close(file, path)))
        static_cast<void>(file_calls::remove(path)); // nobody's now
    return error;
}

std::error_code write(int descriptor, std::span<const std::byte> bytes, const fs::path& path) {
    return writePieces(path, bytes, [=](std::span<const std::byte> left, std::size_t) {
        return ::write(descriptor, left.data(), left.size());
    });
}

std::error_code writeAt(int descriptor, std::uint64_t offset, std::span<const std::byte> bytes,
                        const fs::path& path) {
    return writePieces(path, bytes, [=](std::span<const std::byte> left, std::size_t before) {
        return ::pwrite(descriptor, left.data(), left.size(), static_cast<off_t>(offset + before));
    });
}

std::error_code resize(int descriptor, std::uint64_t bytes, const fs::path& path) {
    return attempt(FileCall::resize, path,
                   [&] { return ::ftruncate(descriptor, static_cast<off_t>(bytes)); });
}

std::size_t read(int descriptor, std::span<std::byte> bytes, const fs::path& path,
                 std::error_code& error) {
    return readPieces(path, bytes, error, [descriptor](std::span<std::byte> left, std::size_t) {
        return ::read(descriptor, left.data(), left.size());
    });
}

std::size_t readSome(int descriptor, std::span<std::byte> bytes, const fs::path& path,
                     std::error_code& error) {
    error = systemError(refusal(FileCall::read, path));
    if (error) return 0;
    const auto got = uninterrupted([&] { return ::read(descriptor, bytes.data(), bytes.size()); });
    if (got < 0) error = systemError(errno);
    return got > 0 ? static_cast<std::size_t>(got) : 0;
}

std::size_t readAt(int descriptor, std::uint64_t offset, std::span<std::byte> bytes,
                   const fs::path& path, std::error_code& error) {
    return readPieces(path, bytes, error, [=](std::span<std::byte> left, std::size_t before) {
        return ::pread(descriptor, left.data(), left.size(), static_cast<off_t>(offset + before));
    });
}

std::error_code flush(int descriptor, const fs::path& path) {
    return attempt(FileCall::flush, path, [&] { return ::fsync(descriptor); });
}

std::error_code tryLock(int descriptor, const fs::path& path) {
    return attempt(FileCall::lock, path, [&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); });
}

void unlock(int descriptor) {
    static_cast<void>(::flock(descriptor, LOCK_UN));
}

fs::file_status status(const fs::path& path, std::error_code& error) {
    error = systemError(refusal(FileCall::status, path));
    return error ? fs::file_status() : fs::status(path, error);
}

std::error_code facts(const fs::path& path, struct stat& facts) {
    return attempt(FileCall::status, path, [&] { return ::stat(path.c_str(), &facts); });
}

std::error_code facts(int descriptor, const fs::path& path, struct stat& facts) {
    return attempt(FileCall::status, path, [&] { return ::fstat(descriptor, &facts); });
}

fs::path resolved(const fs::path& path, std::error_code& error) {
    error = systemError(refusal(FileCall::status, path));
    const fs::path absolute = error ? path : fs::absolute(path, error);
    return error ? absolute : fs::weakly_canonical(absolute, error);
}

std::error_code mayWrite(const fs::path& path) {
    return attempt(FileCall::status, path,
                   [&] { return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS); });
}

std::vector<std::string> list(const fs::path& folder, std::error_code& error) {
    std::vector<std::string> names;
    error = systemError(refusal(FileCall::list, folder));
    if (error) return names;
    // A directory iterator takes each name out of a path: too long where there are thousands.
    const std::unique_ptr<DIR, FolderCloser> opened(::opendir(folder.c_str()));
    const dirent* entry = nullptr;
    while (opened && (errno = 0, entry = ::readdir(opened.get())))
        if (const std::string_view name = entry->d_name; name != "." && name != "..")
            names.emplace_back(name);
    if (errno != 0) {
        error = systemError(errno);
        names.clear();
    }
    return names;
}

std::error_code permissions(const fs::path& path, fs::perms permissions) {
    return attempt(FileCall::permissions, path, [&] {
        return ::chmod(path.c_str(), static_cast<mode_t>(permissions & fs::perms::mask));
    });
}

std::error_code rename(const fs::path& from, const fs::path& to) {
    return attempt(FileCall::rename, to, [&] { return ::rename(from.c_str(), to.c_str()); });
}

std::error_code renameNew(const fs::path& from, const fs::path& to) {
    return attempt(FileCall::rename, to, [&] {
        if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
            return 0;
        if (errno != EINVAL && errno != ENOSYS) return -1;
        // A file system without that kind of renaming.
        if (::link(from.c_str(), to.c_str()) != 0) return -1;
        static_cast<void>(::unlink(from.c_str())); // the new name stands; the old one is litter
        return 0;
    });
}

std::error_code remove(const fs::path& path) {
    return attempt(FileCall::remove, path, [&] { return ::remove(path.c_str()); });
}

std::error_code setAttribute(const fs::path& path, const char* name, const std::string& value) {
    return attempt(FileCall::attribute, path, [&] {
        if (!value.empty()) return ::setxattr(path.c_str(), name, value.data(), value.size(), 0);
        return ::removexattr(path.c_str(), name) == 0 || errno == ENODATA ? 0 : -1;
    });
}

} // namespace file_calls
} // namespace zephyra
