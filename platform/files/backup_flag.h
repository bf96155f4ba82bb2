// skipBackupiCloudForItemAtURL_skip: whether backups leave a file out.
#pragma once

#include <filesystem>

namespace zephyra {

/// Sets or clears the mark by which backup programs on this system pass a file over (the extended
/// attribute user.xdg.robots.backup). False where the file system has no such marks, which then
/// means that the file is backed up. MAIN or WORKER.
bool skipBackupiCloudForItemAtURL_skip(const std::filesystem::path& file, bool skip);

} // namespace zephyra
