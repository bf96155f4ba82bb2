#include "platform/files/whole_file.h"

#include "platform/files/atomic_file.h"
#include "platform/files/file_bytes.h"
#include "platform/files/file_calls.h"
#include "platform/text/odd_bytes.h"

#include <new>
#include <string>
#include <utility>
#include <variant>

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
    return Failure{shownFile(path) + " cannot be " + what + ": " + reason};
}

} // namespace

Result<WholeFile> readWholeFile(const fs::path& path, std::size_t most) {
    const auto refused = [&path](const std::string& reason) {
        return failure(path, "read", reason);
    };
    auto opened = FileBytes::open(path);
    if (const auto* const problem = std::get_if<NotOpened>(&opened)) {
        if (problem->error == std::errc::no_such_file_or_directory ||
            problem->error == std::errc::not_a_directory)
            return refused("there is no such file");
        if (problem->error) return refused(reasonOf(problem->error));
        return refused("it is no ordinary file");
    }
    auto& file = std::get<FileBytes>(opened);
    if (file.size() > most)
        return refused("it has " + std::to_string(file.size()) + " bytes, of which " +
                       std::to_string(most) + " are read at most");
    try {
        std::error_code error;
        WholeFile whole{std::vector<std::byte>(file.size()), file.stamp()};
        const std::size_t count = file.readAt(0, whole.bytes, error);
        if (error) return refused(reasonOf(error));
        whole.bytes.resize(count); // shorter when somebody cuts it meanwhile
        return whole;
    } catch (const std::bad_alloc&) {
        return refused("no memory for its " + std::to_string(file.size()) + " bytes");
    }
}

Result<void> replaceFile(const fs::path& path, std::span<const std::byte> bytes) {
    AtomicFile file;
    std::error_code error = file.open(path);
    if (!error) error = file.write(bytes);
    if (!error) error = file.commit();
    if (error) return failure(path, "written", reasonOf(error));
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
    if (error) return failure(path, "written", reasonOf(error));
    return true;
}

} // namespace zephyra
