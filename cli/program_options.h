// ProgramOptions: all that the command line of `zephyra` takes, declared.
#pragma once

#include "cli/command_table.h"

#include <CLI/App.hpp>
#include <optional>
#include <string>

namespace zephyra {

/// Filled while app parses; what is printed about the program is taken from the same
/// declarations. MAIN.
struct ProgramOptions {
    ProgramOptions();

    CLI::App app{"Cuts a sound into short overlapping grains and writes what they add up to."};
    std::optional<CommandTable> commands;
    std::optional<std::string> sharedFolder;

private:
    void offerSharedFolder(CLI::App& command);
};

} // namespace zephyra
