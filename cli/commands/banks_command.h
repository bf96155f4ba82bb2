// BanksRequest: the command `zephyra banks`.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>

namespace zephyra {

struct BanksRequest {
    std::optional<std::string> bank;   ///< its presets are listed instead of the banks
    std::optional<std::string> search; ///< only what has this text in its name
    bool json = false;
};

/// Prints what stands in the folders in use; a bank that cannot be read is among them. Fails when
/// it is the one that was asked for. MAIN.
ExitCode runBanks(const BanksRequest& request);

} // namespace zephyra
