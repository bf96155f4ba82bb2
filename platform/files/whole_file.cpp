#include "platform/files/whole_file.h"

#include "platform/files/atomic_file.h"
#include "platform/files/file_calls.h"
#include "platform/text/one_line.h"

#include <fcntl.h>
#include <new>
#include <string>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// The system's reason, and what would be right where that helps.
std::string reasonOf(std::error_code error) {
    std::string reason = error.message();
    if (error == std::errc::no_space_on_device ||
        error == std::error_code(EDQUOT, std::generic_category()))
        reason += "; make room";
    else if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted)
        reason += "; you need the right to do so";
    return reason;
}

Failure failure(const fs::path& path, const char* what, const std::string& reason) {
    return Failure{onOneLine(path.string()) + " cannot be " + what + ": " + reason};
}

/// A descriptor that is closed at the end.
class OpenFile {
public:
    OpenFile(const fs::path& path, int flags, std::error_code& error)
        : path_(path), descriptor_(file_calls::open(path, flags, error)) {}
    ~OpenFile() { static_cast<void>(close()); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int descriptor() const noexcept { return descriptor_; }
    std::error_code close() {
        if (descriptor_ < 0) return {};
        return file_calls::close(std::exchange(descriptor_, -1), path_);
    }

private:
    const fs::path& path_;
    int descriptor_;
};

std::error_code writeBytes(const fs::path& path, std::span<const std::byte> bytes) {
    std::error_code error;
    OpenFile file(path, O_WRONLY | O_CREAT | O_EXCL, error);
    if (!error) error = file_calls::write(file.descriptor(), bytes, path);
    const std::error_code closing = file.close();
    return error ? error : closing;
}

/// What stands in the open file, whose stamp is known.
Result<WholeFile> readOpen(const OpenFile& file, const fs::path& path, const FileStamp& stamp,
                           std::size_t most) {
    if (stamp.bytes > most)
        return failure(path, "read",
                       "it has " + std::to_string(stamp.bytes) + " bytes, of which " +
                           std::to_string(most) + " are read at most");
    try {
        WholeFile whole{std::vector<std::byte>(stamp.bytes), stamp};
        std::error_code error;
        const std::size_t count = file_calls::read(file.descriptor(), whole.bytes, path, error);
        if (error) return failure(path, "read", reasonOf(error));
        whole.bytes.resize(count); // shorter when somebody cuts it meanwhile
        return whole;
    } catch (const std::bad_alloc&) {
        return failure(path, "read", "no memory for its " + std::to_string(stamp.bytes) + " bytes");
    }
}

} // namespace

Result<WholeFile> readWholeFile(const fs::path& path, std::size_t most) {
    std::error_code error;
    const fs::file_status status = file_calls::status(path, error);
    if (status.type() == fs::file_type::not_found)
        return failure(path, "read", "there is no such file");
    if (error) return failure(path, "read", reasonOf(error));
    // Opening a device or pipe may wait for ever.
    if (!fs::is_regular_file(status)) return failure(path, "read", "it is no ordinary file");
    const OpenFile file(path, O_RDONLY | O_NONBLOCK, error);
    if (error) return failure(path, "read", reasonOf(error));
    const auto stamp = fileStamp(file.descriptor(), path);
    if (!stamp) return failure(path, "read", "it is no ordinary file any more");
    return readOpen(file, path, *stamp, most);
}

Result<void> replaceFile(const fs::path& path, std::span<const std::byte> bytes) {
    AtomicFile file;
    std::error_code error = file.open(path);
    if (!error) error = writeBytes(file.path(), bytes);
    if (!error) error = file.commit();
    if (error) return failure(path, "written", reasonOf(error));
    return {};
}

Result<bool> createFile(const fs::path& path, std::span<const std::byte> bytes) {
    std::error_code error;
    if (fs::exists(file_calls::status(path, error))) return false;
    AtomicFile file;
    error = file.open(path);
    if (!error) error = writeBytes(file.path(), bytes);
    if (!error) error = file.commitNew();
    if (error == std::errc::file_exists) return false;
    if (error) return failure(path, "written", reasonOf(error));
    return true;
}

} // namespace zephyra
