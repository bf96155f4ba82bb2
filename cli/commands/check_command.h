// CheckRequest: the command `zephyra check`.
#pragma once

#include "cli/exit_code.h"

#include <string>

namespace zephyra {

struct CheckRequest {
    std::string file;
    bool repair = false; ///< a mended copy is written beside it
    bool json = false;
};

/// Prints what is wrong with a bank's file, at which key. A bank with faults is a failure unless a
/// mended copy was asked for and stands there now. MAIN.
ExitCode runCheck(const CheckRequest& request);

} // namespace zephyra
