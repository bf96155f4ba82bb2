// runParameters: `zephyra parameters`, the table that hosts see.
#pragma once

#include "cli/exit_code.h"

namespace zephyra {

enum class ParametersForm { text, json };

/// Prints address, name, identifier, range, unit, flags and default of every parameter.
ExitCode runParameters(ParametersForm form);

} // namespace zephyra
