#include "platform/files/whole_file.h"

#include "platform/files/atomic_file.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_failure.h"

#include <new>
#include <string>

namespace zephyra {

namespace fs = std::filesystem;

Result<WholeFile> readWholeFile(const fs::path& path, std::size_t most,
                                const StreamedFiles& streams) {
    const auto opened = openToRead(path, streams);
    if (!opened) return Failure{opened.message()};
    const FileBytes& file = opened.value();
    if (file.size() > most)
        return fileFailure(inputTitle(path), "read",
                           "it has " + std::to_string(file.size()) + " bytes, of which " +
                               std::to_string(most) + " are read at most");
    try {
        std::error_code error;
        WholeFile whole{std::vector<std::byte>(file.size()), file.stamp()};
        const std::size_t count = file.readAt(0, whole.bytes, error);
        if (error) return fileFailure(inputTitle(path), "read", error);
        whole.bytes.resize(count); // shorter when somebody cuts it meanwhile
        return whole;
    } catch (const std::bad_alloc&) {
        return fileFailure(inputTitle(path), "read",
                           "no memory for its " + std::to_string(file.size()) + " bytes");
    }
}

Result<void> replaceFile(const fs::path& path, std::span<const std::byte> bytes) {
    AtomicFile file;
    std::error_code error = file.open(path);
    if (!error) error = file.write(bytes);
    if (!error) error = file.commit();
    if (error) return fileFailure(path, "written", error);
    return {};
}

Result<bool> createFile(const fs::path& path, std::span<const std::byte> bytes) {
    std::error_code error;
    if (fs::exists(file_calls::status(path, error))) return false;
    AtomicFile file;
    error = file.open(path);
    if (!error) error = file.write(bytes);
    if (!error) error = file.commitNew();
    if (error == std::errc::file_exists) return false;
    if (error) return fileFailure(path, "written", error);
    return true;
}

} // namespace zephyra
