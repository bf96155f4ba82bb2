#include "platform/files/small_file.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>

namespace zephyra {

Result<std::string> readSmallFile(const std::filesystem::path& path) {
    const std::string name = path.string();
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) return Failure{name + " does not exist; check the name"};
    if (!std::filesystem::is_regular_file(status))
        return Failure{name + " is no ordinary file; name one"};
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (!error && size > kMostSmallFileBytes)
        return Failure{name + " is larger than 16 MiB; name a shorter file"};
    std::ifstream file(path, std::ios::binary);
    if (!file) return Failure{name + " cannot be read: " + std::strerror(errno)};
    std::string bytes(std::istreambuf_iterator<char>(file), {});
    if (file.bad()) return Failure{name + " cannot be read to its end; check the disk"};
    return bytes;
}

} // namespace zephyra
