// getIncrementalNameFromDocumentsFolder: a numbered name that stands behind those already used.
#pragma once

#include <filesystem>
#include <string>

namespace zephyra {

/// "base N", without an extension. N is one more than the largest whole number that follows base
/// (and blanks) in the name of an entry of folder, at most that of std::int64_t; 1 when there is
/// none, also for a folder that cannot be read. A number counts up to the next base in the name.
/// MAIN or WORKER.
std::string getIncrementalNameFromDocumentsFolder(const std::filesystem::path& folder,
                                                  const std::string& base);

} // namespace zephyra
