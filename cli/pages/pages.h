// manualPage and its kin: texts about the program in the forms of other programs.
#pragma once

#include "cli/pages/command_facts.h"

#include <string>
#include <vector>

namespace zephyra {

using Commands = std::vector<CommandFacts>;

/// zephyra(1) as roff of the man macros. MAIN.
std::string manualPage(const Commands& commands);

/// Completions for the shells of these names; banks and presets are asked of the program when they
/// are completed, so that the user's own are among them. MAIN.
std::string bashCompletion(const Commands& commands);
std::string zshCompletion(const Commands& commands);
std::string fishCompletion(const Commands& commands);

} // namespace zephyra
