// reportBatch: what `zephyra render --out-dir` tells about what it did.
#pragma once

#include "cli/batch/batch_plan.h"
#include "cli/terminal/exit_code.h"

#include <vector>

namespace zephyra {

/// Prints a line for every render, or with --json an array with an object for each; on standard
/// error a line for every failure, then ExitCode::failure is the answer. MAIN.
ExitCode reportBatch(const std::vector<BatchJob>& jobs, const RenderOptions& options);

} // namespace zephyra
