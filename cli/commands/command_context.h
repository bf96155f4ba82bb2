// CommandContext: what the command line hands to whichever command it names.
#pragma once

#include "platform/files/folders.h"
#include "platform/text/result.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Plain data.
struct CommandContext {
    Folders folders; ///< absolute
    bool sharedFolderWasNamed = false;
    std::string program = {}; ///< by which it can be called again, from any folder
};

/// program: as the system hands it over. sharedFolder: what --shared-folder named, seen from the
/// current folder; empty: not given, and standardFolders() hold. MAIN.
CommandContext commandContext(const std::string& program,
                              const std::filesystem::path& sharedFolder);

/// Makes the shared folder where it is missing, with the built-in samples. Fails only where there
/// is no folder then: samples that find no room are still found among the resources. MAIN.
Result<void> readySharedFolder(const Folders& folders);

} // namespace zephyra
