// checkFileClashes: keeps a render from replacing a file that it reads or has just written.
#pragma once

#include "cli/options/render_options.h"

namespace zephyra {

/// Whether every file that the render writes has a name of its own; only --save-state may name what
/// --state read. A failure is a wrong usage that names both.
Result<void> checkFileClashes(const RenderOptions& options);

/// Whether the render leaves a file alone that it turned out to read; what: the file's part in it.
Result<void> checkOverwriting(const RenderOptions& options, const std::string& what,
                              const std::filesystem::path& file);

/// The one name of a file, whether or not it exists yet; empty for none.
std::filesystem::path trueName(const std::filesystem::path& file);

} // namespace zephyra
