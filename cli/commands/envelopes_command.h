// runEnvelopes: the command `zephyra envelopes`.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>

namespace zephyra {

/// Prints the menu of grain envelopes, and draws it where a picture is named. MAIN.
ExitCode runEnvelopes(const std::optional<std::string>& picture);

} // namespace zephyra
