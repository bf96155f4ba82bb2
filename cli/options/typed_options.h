// TypedCommand: a command line as it was typed, once it has been parsed.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// Plain data.
struct TypedOption {
    std::string name;                      ///< the long one: "--rate"
    std::optional<std::string> value = {}; ///< none: a flag
};

/// The options of command, each time that it was given, in the order in which they were typed;
/// words without an option's name are left out. MAIN.
std::vector<TypedOption> typedOptions(const CLI::App& command);

/// Plain data.
struct TypedCommand {
    std::string program;                     ///< by which it can be called again
    std::vector<TypedOption> before, behind; ///< the command's name
};

} // namespace zephyra
