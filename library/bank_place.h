// isThere and withSuffix: where a bank's file stands, or may stand aside.
#pragma once

#include <filesystem>
#include <string>

namespace zephyra {

/// Whether something stands there; unknown counts as there, so that nothing is written over it.
/// MAIN or WORKER.
bool isThere(const std::filesystem::path& path);

/// name cut so that the suffix still fits in a file name, between two characters. Any thread.
std::string withSuffix(const std::string& name, const std::string& suffix);

} // namespace zephyra
