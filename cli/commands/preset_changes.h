// RenameRequest and its kin: the commands that change banks and presets where they stand.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>

namespace zephyra {

// Names are those of preset_names.h. All are MAIN.

/// `zephyra preset rename`.
struct RenameRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: the bank itself
    std::string name;                  ///< the new one
};
ExitCode runPresetRename(const RenameRequest& request);

/// `zephyra preset delete`.
struct DeleteRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: the bank itself
    bool yes = false;                  ///< else it is only told what would be deleted
};
ExitCode runPresetDelete(const DeleteRequest& request);

/// `zephyra preset copy`.
struct CopyRequest {
    std::string bank, preset;
    std::string target; ///< a bank, made when missing
};
ExitCode runPresetCopy(const CopyRequest& request);

/// `zephyra preset move`: to a place of the list, or to another bank.
struct MoveRequest {
    std::string bank, preset;
    std::optional<std::string> position, target;
};
ExitCode runPresetMove(const MoveRequest& request);

} // namespace zephyra
