// runRender: the command `zephyra render`.
#pragma once

#include "cli/exit_code.h"
#include "cli/options/render_options.h"

namespace zephyra {

/// Reads the source, renders it, writes the file and the picture, and reports. MAIN.
ExitCode runRender(const TypedRenderOptions& typed);

} // namespace zephyra
