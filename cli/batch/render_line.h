// renderLine: a render as the command line that makes it.
#pragma once

#include "cli/options/render_options.h"
#include "cli/terminal/exit_code.h"
#include "library/bank_folder.h"

#include <string>

namespace zephyra {

/// As the options were typed, but for what told of other renders: with the request's own input,
/// preset, seed and names of files; the line makes the batch's folder where it is missing. banks:
/// where the preset stands. Without a line end. MAIN.
std::string renderLine(const RenderOptions& options, const RenderRequest& request,
                       BankFolder& banks);

/// `zephyra render --out-dir --dry-run`: prints the line of every render that the batch would
/// make, in its order, and tells of each that cannot be. MAIN.
ExitCode printBatchLines(const Folders& folders, const RenderOptions& options);

} // namespace zephyra
