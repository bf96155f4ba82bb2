// runInfo: the command `zephyra info`.
#pragma once

#include "cli/exit_code.h"

#include <string>

namespace zephyra {

enum class InfoForm { text, json };

/// Prints format, channels, rate, length, peak and loudness of a sound file. MAIN.
ExitCode runInfo(const std::string& file, InfoForm form);

} // namespace zephyra
