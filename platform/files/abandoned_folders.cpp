#include "platform/files/abandoned_folders.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_stamp.h"

#include <algorithm>
#include <chrono>
#include <string_view>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::hours kLeastAge{24};

bool isPrivateFolderName(std::string_view name) {
    const std::string_view pattern = kPrivateFolder;
    const std::size_t fixed = pattern.find('X');
    const auto isUnique = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    };
    return name.size() == pattern.size() && name.substr(0, fixed) == pattern.substr(0, fixed) &&
           std::ranges::all_of(name.substr(fixed), isUnique);
}

/// False also for one that cannot be looked at.
bool isOld(const fs::path& path) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto stamp = fileStamp(path);
    return stamp && std::chrono::nanoseconds(stamp->modified) < now - kLeastAge;
}

} // namespace

void removePrivateFolder(const fs::path& folder) {
    std::error_code ignored;
    for (const std::string& name : file_calls::list(folder, ignored))
        static_cast<void>(file_calls::remove(folder / name));
    static_cast<void>(file_calls::remove(folder));
}

void removeAbandonedFolders(const fs::path& parent) {
    std::error_code ignored;
    for (const std::string& name : file_calls::list(parent, ignored)) {
        if (!isPrivateFolderName(name)) continue;
        const fs::path folder = parent / name;
        std::error_code error;
        // A link of that name leads to files that are not ours.
        if (!fs::is_directory(fs::symlink_status(folder, ignored)) || !isOld(folder)) continue;
        const auto files = file_calls::list(folder, error);
        const auto fileIsOld = [&](const std::string& file) { return isOld(folder / file); };
        // A recording may grow for days without a change of its folder.
        if (!error && std::ranges::all_of(files, fileIsOld)) removePrivateFolder(folder);
    }
}

} // namespace zephyra
