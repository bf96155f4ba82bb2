// importAll: imports one file after another, and goes on after one that cannot be.
#pragma once

#include "cli/terminal/exit_code.h"
#include "platform/text/result.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

/// Imports one file: the line that says so, or the failure's. progress is told the share of the
/// file that is done, 0 to 1, on any one thread while MAIN waits; false ends the import.
using ImportOne = std::function<Result<std::string>(
    const std::string& file, const std::function<bool(double share)>& progress)>;

/// Prints what was imported at once, what was not at the end: a line each and, of several files,
/// how many were. Ctrl-C ends it with the file at hand. On a terminal a bar shows how far all of
/// them are. MAIN.
ExitCode importAll(const std::vector<std::string>& files, const ImportOne& importOne);

} // namespace zephyra
