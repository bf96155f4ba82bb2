#include "cli/commands/command_context.h"

#include "library/shared_folder.h"

#include <system_error>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

fs::path whole(const fs::path& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal();
}

} // namespace

CommandContext commandContext(const std::string& program, const fs::path& sharedFolder) {
    const Folders standard = standardFolders();
    const bool named = !sharedFolder.empty();
    // One without a folder is found by the shell, here and elsewhere.
    const bool isPath = program.find('/') != std::string::npos;
    return {.folders = {whole(named ? sharedFolder : standard.shared), whole(standard.resources)},
            .sharedFolderWasNamed = named,
            .program = isPath ? whole(program).string() : program};
}

Result<void> readySharedFolder(const Folders& folders) {
    auto ready = prepareSharedFolder(folders);
    std::error_code ignored;
    if (fs::is_directory(folders.shared, ignored)) return {};
    return ready;
}

} // namespace zephyra
