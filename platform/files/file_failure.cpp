#include "platform/files/file_failure.h"

#include "platform/text/odd_bytes.h"

#include <cerrno>
#include <utility>
#include <variant>

namespace zephyra {

namespace fs = std::filesystem;

Failure fileFailure(const fs::path& path, const char* done, const std::string& reason) {
    return Failure{shownFile(path) + " cannot be " + done + ": " + reason};
}

Failure fileFailure(const fs::path& path, const char* done, std::error_code error) {
    std::string reason = error.message();
    if (error == std::errc::no_space_on_device ||
        error == std::error_code(EDQUOT, std::generic_category()))
        reason += "; make room";
    else if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted)
        reason += "; you need the right to do so";
    return fileFailure(path, done, reason);
}

Result<FileBytes> openToRead(const fs::path& path, const StreamedFiles& streams) {
    auto opened = streams.open(path);
    if (auto* const file = std::get_if<FileBytes>(&opened)) return std::move(*file);
    const std::error_code error = std::get<NotOpened>(opened).error;
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        return fileFailure(inputTitle(path), "read", "there is no such file");
    if (error) return fileFailure(inputTitle(path), "read", error);
    return fileFailure(inputTitle(path), "read", "it is no ordinary file");
}

} // namespace zephyra
