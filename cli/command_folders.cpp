#include "cli/command_folders.h"

#include "library/shared_folder.h"

#include <system_error>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

fs::path& namedSharedFolder() {
    static fs::path folder;
    return folder;
}

fs::path whole(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal();
}

} // namespace

Folders commandFolders() {
    Folders folders = standardFolders();
    if (sharedFolderWasNamed()) folders.shared = namedSharedFolder();
    return {whole(folders.shared), whole(folders.resources)};
}

void setCommandSharedFolder(const fs::path& folder) {
    namedSharedFolder() = folder.empty() ? folder : whole(folder);
}

bool sharedFolderWasNamed() {
    return !namedSharedFolder().empty();
}

Result<void> readySharedFolder(const Folders& folders) {
    auto ready = prepareSharedFolder(folders);
    std::error_code ignored;
    if (fs::is_directory(folders.shared, ignored)) return {};
    return ready;
}

} // namespace zephyra
