// checkFileClashes: keeps a render from replacing a file that it reads or has just written.
#pragma once

#include "platform/files/folders.h"
#include "platform/text/result.h"
#include "rendering/render_request.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Whether every file that the render writes has a name of its own; only the saved state may take
/// the place of the one it started from. The failure names both. MAIN.
Result<void> checkFileClashes(const RenderRequest& request, const Folders& folders);

/// Whether the render leaves a file alone that it turned out to read; what: the file's part in it.
/// MAIN.
Result<void> checkOverwriting(const RenderRequest& request, const std::string& what,
                              const std::filesystem::path& file);

/// The one name of a file, whether or not it exists yet; empty for none. MAIN.
std::filesystem::path trueName(const std::filesystem::path& file);

} // namespace zephyra
