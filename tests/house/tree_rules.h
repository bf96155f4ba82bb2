// TreeRules: the house's rules about its own files, each a function from a tree to its breaches.
#pragma once

#include "tests/house/folder_table.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

/// One line for each breach, "engine/a.h:3 includes stream/b.h, ..."; sorted, empty when all is
/// well. root is the folder that holds the house.
std::vector<std::string> forbiddenIncludes(const std::filesystem::path& root,
                                           const std::vector<FolderRow>& house);

/// Build files that link a folder's library, or a third party's, where the table does not let them.
std::vector<std::string> forbiddenLinks(const std::filesystem::path& root,
                                        const std::vector<FolderRow>& house);

/// Headers whose first line does not name, before its colon if it has one, what they have.
std::vector<std::string> namelessHeaders(const std::filesystem::path& root,
                                         const std::vector<FolderRow>& house);

/// Folders at the root that have C++ sources and neither a row nor a place around the house.
std::vector<std::string> foldersWithoutRow(const std::filesystem::path& root,
                                           const std::vector<FolderRow>& house);

} // namespace zephyra
