// completeArguments: what was typed, as the parser of the command line takes it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// typed, the words behind the program's name, as they are meant:
/// - What begins with an option or a sound's name is `render`; such a name is that of a file, has a
///   slash or an extension, or is "-". Commands come first: a file that is called like one is
///   reached by "./render".
/// - "version" is --version, and "render help" is "help render"; what stands behind "help" is left
///   as it is.
/// - Of options that may stand alone, "--freeze 4" is "--freeze=4" where a time follows.
/// - Where "--" ends the options, all arguments stand behind it.
/// MAIN.
std::vector<std::string> completeArguments(std::vector<std::string> typed, const CLI::App& app);

} // namespace zephyra
