#include "platform/files/folder_entries.h"

#include "platform/files/file_calls.h"

#include <algorithm>

namespace zephyra {

namespace {

/// Where the extension's dot stands; the end of a name that has none.
std::size_t extensionDot(std::string_view fileName) noexcept {
    const std::size_t dot = fileName.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? fileName.size() : dot;
}

} // namespace

std::vector<std::string> folderEntries(const std::filesystem::path& folder) {
    std::error_code ignored;
    auto names = file_calls::list(folder, ignored);
    std::ranges::sort(names); // char_traits compares as unsigned bytes
    return names;
}

std::string_view extensionOf(std::string_view fileName) noexcept {
    const std::size_t dot = extensionDot(fileName);
    return dot == fileName.size() ? std::string_view() : fileName.substr(dot + 1);
}

std::string_view stemOf(std::string_view fileName) noexcept {
    return fileName.substr(0, extensionDot(fileName));
}

} // namespace zephyra
