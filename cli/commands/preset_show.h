// PresetShowRequest: the command `zephyra preset show`.
#pragma once

#include "cli/exit_code.h"

#include <string>

namespace zephyra {

struct PresetShowRequest {
    std::string bank, preset; ///< see preset_names.h
    bool json = false;
};

/// Prints every value of a preset: controls as people read them, the rest key by key. MAIN.
ExitCode runPresetShow(const PresetShowRequest& request);

} // namespace zephyra
