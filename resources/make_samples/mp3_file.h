// writeMp3: stores a finished sound as a built-in sample.
#pragma once

#include "resources/make_samples/signal.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Writes sound to path as mono MP3 at kSampleRate with a constant bit rate. Returns an empty text
/// on success, otherwise one line that names the file and what went wrong.
std::string writeMp3(const std::filesystem::path& path, const Signal& sound);

} // namespace zephyra
