// commandFolders: the folders that the command works in.
#pragma once

#include "platform/files/folders.h"
#include "platform/text/result.h"

#include <filesystem>

namespace zephyra {

/// --shared-folder, or nothing more than standardFolders() where it was not given; absolute. MAIN.
Folders commandFolders();

/// What --shared-folder named, seen from the current folder; empty: not given. MAIN.
void setCommandSharedFolder(const std::filesystem::path& folder);

/// Whether the option decides. MAIN.
bool sharedFolderWasNamed();

/// Makes the shared folder where it is missing, with the built-in samples. Fails only where there
/// is no folder then: samples that find no room are still found among the resources. MAIN.
Result<void> readySharedFolder(const Folders& folders);

} // namespace zephyra
