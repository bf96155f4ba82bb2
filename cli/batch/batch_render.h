// runBatchRender: `zephyra render --out-dir`, many renders at a time.
#pragma once

#include "cli/options/render_options.h"
#include "cli/terminal/exit_code.h"

namespace zephyra {

/// Renders every INPUT with every preset, as many at a time as there are processors, each in a
/// process of its own and into a file of its own in options.outDir, with a picture; then draws them
/// all on a contact sheet. Those that fail are told of, a line each, and the others go on. The
/// process must have no other threads. MAIN.
ExitCode runBatchRender(const Folders& folders, const RenderOptions& options);

} // namespace zephyra
