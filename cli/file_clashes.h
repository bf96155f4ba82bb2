// checkFileClashes: keeps a render from replacing a file that it reads or has just written.
#pragma once

#include "cli/render_options.h"

namespace zephyra {

/// Whether every file that the render writes has a name of its own; only --save-state may name what
/// --state read. A failure is a wrong usage that names both.
Result<void> checkFileClashes(const RenderOptions& options);

} // namespace zephyra
