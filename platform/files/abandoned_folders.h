// removeAbandonedFolders: clears away what processes left when they died while writing a file.
#pragma once

#include <filesystem>

namespace zephyra {

/// Names the private folders in which files grow, as nobody would name a folder of his own; the X
/// stand for what makes them unique.
inline constexpr const char* kPrivateFolder = ".zephyra-unfinished-XXXXXX";

/// Removes the private folders in parent in which nothing has changed for a day: nobody writes
/// there any more. Errors are ignored. MAIN or WORKER.
void removeAbandonedFolders(const std::filesystem::path& parent);

/// Removes folder, a private one, with the files in it. Errors are ignored. MAIN or WORKER.
void removePrivateFolder(const std::filesystem::path& folder);

} // namespace zephyra
