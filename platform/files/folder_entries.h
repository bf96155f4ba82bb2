// folderEntries: the names in a folder, in an order that never changes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Every name in folder, sorted by bytes; none for a folder that cannot be read. MAIN or WORKER.
std::vector<std::string> folderEntries(const std::filesystem::path& folder);

/// The extension of a file name without its dot, "" where there is none: what follows the last dot
/// of a name that has something before it. Any thread.
std::string_view extensionOf(std::string_view fileName) noexcept;

/// The name without that extension and its dot. Any thread.
std::string_view stemOf(std::string_view fileName) noexcept;

} // namespace zephyra
