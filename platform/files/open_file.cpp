#include "platform/files/open_file.h"

#include "platform/files/file_calls.h"
#include "platform/text/text_numbers.h"

#include <limits>
#include <string_view>
#include <utility>

namespace zephyra {

OpenFile::OpenFile(std::filesystem::path path, int flags, std::error_code& error)
    : path_(std::move(path)), descriptor_(file_calls::open(path_, flags, error)) {}

OpenFile OpenFile::duplicateOf(int descriptor, std::filesystem::path path, std::error_code& error) {
    OpenFile file;
    file.descriptor_ = file_calls::duplicate(descriptor, path, error);
    file.path_ = std::move(path);
    return file;
}

OpenFile::~OpenFile() {
    static_cast<void>(close());
}

OpenFile::OpenFile(OpenFile&& other) noexcept
    : path_(std::move(other.path_)), descriptor_(std::exchange(other.descriptor_, -1)) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
    std::swap(path_, other.path_);
    std::swap(descriptor_, other.descriptor_);
    return *this;
}

std::error_code OpenFile::close() {
    if (descriptor_ < 0) return {};
    return file_calls::close(std::exchange(descriptor_, -1), path_);
}

std::optional<int> numberedDescriptor(const std::filesystem::path& name) {
    for (const std::string_view folder : {"/dev/fd/", "/proc/self/fd/"})
        if (const std::string_view text = name.native(); text.starts_with(folder)) {
            const auto number = parseWhole(text.substr(folder.size()));
            if (number && *number <= std::numeric_limits<int>::max())
                return static_cast<int>(*number);
        }
    return std::nullopt;
}

} // namespace zephyra
