// shellLine: a command as a line that a shell takes.
#pragma once

#include <string>
#include <vector>

namespace zephyra {

/// A command's words, the program first.
using ShellCommand = std::vector<std::string>;

/// One line, without a line end, which any POSIX shell takes as these commands, each of which runs
/// when the one before has ended well. It finds in every word the bytes that are there, whatever
/// they are; control characters are written as escapes, so that the line stays one and a terminal
/// can show it. Any thread but RENDER.
std::string shellLine(const std::vector<ShellCommand>& commands);

} // namespace zephyra
