// PresetImportRequest: the command `zephyra preset import`.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

struct PresetImportRequest {
    std::vector<std::string> files;
    std::optional<std::string> bank; ///< gets the presets; nothing: each file becomes a bank
    std::optional<std::string> name; ///< of the new bank, instead of the file's
    bool yes = false;                ///< a bank of that name is replaced
};

/// Takes over banks from files. Every file is read before anything is written. MAIN.
ExitCode runPresetImport(const PresetImportRequest& request);

} // namespace zephyra
