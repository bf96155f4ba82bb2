// StandaloneFolders: where the standalone program remembers devices and its last session.
#pragma once

#include <filesystem>

namespace zephyra {

struct StandaloneFolders {
    std::filesystem::path config; ///< $XDG_CONFIG_HOME/zephyra, else $HOME/.config/zephyra
    std::filesystem::path state;  ///< $XDG_STATE_HOME/zephyra, else $HOME/.local/state/zephyra
};

/// Relative paths in the environment are ignored, as the desktop's convention has it; an empty path
/// where not even $HOME is known. Nothing is created. MAIN.
StandaloneFolders standaloneFolders();

} // namespace zephyra
