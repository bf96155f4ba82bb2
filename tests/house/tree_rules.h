// breachesOf: where a tree breaks the house's rules about its own files.
#pragma once

#include "tests/house/folder_table.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// One line for each breach of a rule, sorted; empty when all is well. root is the folder that
/// holds the house. The rules: sources include, and build files link, only what the table lets
/// them; a header's first line names, before its colon if it has one, what the header has; and a
/// folder at the root with C++ sources has a row or a place around the house.
std::vector<std::string> breachesOf(const std::filesystem::path& root,
                                    const std::vector<FolderRow>& house);

} // namespace zephyra
