// Folders: where Zephyra keeps and finds files, and where it stands itself.
#pragma once

#include <filesystem>
#include <vector>

namespace zephyra {

/// Given from outside, so that tests and several programs can have their own. MAIN.
struct Folders {
    std::filesystem::path shared;    ///< what the user saved and imported; may not exist yet
    std::filesystem::path resources; ///< what came with the program, read-only
};

/// Both absolute. shared: $ZEPHYRA_SHARED_FOLDER, else $XDG_DATA_HOME/zephyra, else
/// $HOME/.local/share/zephyra. resources: $ZEPHYRA_RESOURCE_FOLDER, else the first of
/// installedPlaces that exists. Nothing is created. MAIN.
Folders standardFolders();

/// What one user's programs remember; an empty path where not even $HOME is known.
struct UserFolders {
    std::filesystem::path config; ///< $XDG_CONFIG_HOME/zephyra, else $HOME/.config/zephyra
    std::filesystem::path state;  ///< $XDG_STATE_HOME/zephyra, else $HOME/.local/state/zephyra
};

/// Relative paths in the environment are ignored, as the desktop's convention has it. Nothing is
/// created. Any thread but RENDER.
UserFolders userFolders();

/// Where the program or library that this code is in stands: absolute, links followed. What is
/// installed with it is found from here. Empty where the system does not tell. Any thread but
/// RENDER.
std::filesystem::path programFolder();

/// Where place ("share/zephyra/resources") may be, likeliest first: in the prefix that code in
/// folder was installed to, whatever lies between its bin or lib and a bundle; in built, unless it
/// is empty; and, for a bundle that was copied out of its prefix, in the user's and the system's
/// prefixes ($XDG_DATA_DIRS). MAIN.
std::vector<std::filesystem::path> installedPlaces(const std::filesystem::path& folder,
                                                   const std::filesystem::path& place,
                                                   const std::filesystem::path& built);

} // namespace zephyra
