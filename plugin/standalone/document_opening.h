// openDocument: a sample or a bank that a user hands to the program.
#pragma once

#include "hosting/plugin_instance.h"
#include "platform/text/result.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// A bank joins the shared folder and its first preset is chosen; anything else is played as a
/// sample, once its bytes are a sound's. Answers one line that says what happened, fails with one
/// that names the file. HOST.
Result<std::string> openDocument(PluginInstance& instance, const std::filesystem::path& file);

} // namespace zephyra
