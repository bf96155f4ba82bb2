// PresetExportRequest: the command `zephyra preset export`.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>

namespace zephyra {

struct PresetExportRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: all of the bank
    std::optional<std::string> output; ///< nothing: named after preset or bank, in this folder
    bool yes = false;                  ///< a file of that name is replaced
};

/// Writes a bank that can go to another machine: what its presets play goes along, unless it comes
/// with the program or is too long. MAIN.
ExitCode runPresetExport(const PresetExportRequest& request);

} // namespace zephyra
