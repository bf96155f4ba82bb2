// runCommandLine: the program `zephyra` from its arguments to its exit code.
#pragma once

#include "cli/terminal/exit_code.h"

namespace zephyra {

/// Parses the arguments, the program's name first, and runs the command they name. MAIN.
ExitCode runCommandLine(int count, const char* const* arguments);

} // namespace zephyra
