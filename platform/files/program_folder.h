// programFolder: where the program or library that this code is in stands.
#pragma once

#include <filesystem>

namespace zephyra {

/// Absolute, links followed: what is installed with it is found from here. Empty where the system
/// does not tell. Any thread but RENDER.
std::filesystem::path programFolder();

} // namespace zephyra
