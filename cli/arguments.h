// completeArguments: what was typed, as the parser of the command line takes it.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// typed, the words behind the program's name, with a command in front: what begins with an option
/// or the name of a sound is `render`, "version" is --version, and "render help" is "help render",
/// what follows which is left as it is. A name of a sound is that of a file, has a slash or an
/// extension, or is "-". Of options that may stand alone, "--freeze 4" becomes "--freeze=4" where a
/// time follows. Commands come first: a file that is called like one is reached by "./render".
/// MAIN.
std::vector<std::string> completeArguments(std::vector<std::string> typed, const CLI::App& app);

} // namespace zephyra
