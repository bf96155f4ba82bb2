#include "platform/files/small_file.h"

#include <variant>

namespace zephyra {

namespace {

Failure notOpened(const std::string& name, const NotOpened& problem) {
    using enum NotOpened::Why;
    if (problem.why == missing) return {name + " does not exist; check the name"};
    if (problem.why == refused) return {name + " cannot be read: " + problem.error.message()};
    return {name + " is no ordinary file; name one"};
}

} // namespace

Result<std::string> readSmallFile(const std::filesystem::path& path, const StreamedFiles& streams) {
    const std::string name = inputTitle(path);
    auto opened = streams.open(path);
    if (const auto* const problem = std::get_if<NotOpened>(&opened))
        return notOpened(name, *problem);
    auto& file = std::get<FileBytes>(opened);
    if (file.size() > kMostSmallFileBytes)
        return Failure{name + " is larger than 16 MiB; name a shorter file"};
    std::string bytes(static_cast<std::size_t>(file.size()), '\0');
    std::error_code error;
    bytes.resize(file.readAt(0, std::as_writable_bytes(std::span(bytes)), error));
    if (error) return Failure{name + " cannot be read to its end; check the disk"};
    return bytes;
}

} // namespace zephyra
