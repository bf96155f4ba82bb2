// Folders: where Zephyra keeps and finds files.
#pragma once

#include <filesystem>

namespace zephyra {

/// Given from outside, so that tests and several programs can have their own. MAIN.
struct Folders {
    std::filesystem::path shared;    ///< what the user saved and imported; may not exist yet
    std::filesystem::path resources; ///< what came with the program, read-only
};

/// Both absolute. shared: $ZEPHYRA_SHARED_FOLDER, else $XDG_DATA_HOME/zephyra, else
/// $HOME/.local/share/zephyra. resources: $ZEPHYRA_RESOURCE_FOLDER, else ../share/zephyra from
/// where the program stands, if that exists, else the folder that it was built with. Nothing is
/// created. MAIN.
Folders standardFolders();

} // namespace zephyra
