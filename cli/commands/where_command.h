// runWhere: the command `zephyra where`.
#pragma once

#include "cli/exit_code.h"

namespace zephyra {

enum class WhereForm { text, json };

/// Prints the folders in use, why these, and whether they exist. MAIN.
ExitCode runWhere(WhereForm form);

} // namespace zephyra
