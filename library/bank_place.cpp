#include "library/bank_place.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_name.h"

#include <algorithm>
#include <cstddef>
#include <system_error>

namespace zephyra {

bool isThere(const std::filesystem::path& path) {
    std::error_code ignored;
    return file_calls::status(path, ignored).type() != std::filesystem::file_type::not_found;
}

std::string withSuffix(const std::string& name, const std::string& suffix) {
    std::size_t length = std::min(name.size(), kMostFileNameBytes - suffix.size());
    const auto isInside = [&](std::size_t at) {
        return at < name.size() && (static_cast<unsigned char>(name[at]) & 0xc0) == 0x80;
    };
    while (length > 0 && isInside(length)) --length;
    return name.substr(0, length) + suffix;
}

} // namespace zephyra
