// Folders: where Zephyra keeps and finds files, and where it stands itself.
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

/// Where the program or library that this code is in stands: absolute, links followed. What is
/// installed with it is found from here. Empty where the system does not tell. Any thread but
/// RENDER.
std::filesystem::path programFolder();

} // namespace zephyra
