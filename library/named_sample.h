// namedSample: the sound file that a typed name means.
#pragma once

#include "platform/files/folders.h"

#include <filesystem>

namespace zephyra {

/// typed itself where such a file is there, or where it names a folder, too; else the sample of the
/// library that is listed under that name, the user's before the built-in one; typed where there is
/// none. MAIN.
std::filesystem::path namedSample(const std::filesystem::path& typed, const Folders& folders);

} // namespace zephyra
