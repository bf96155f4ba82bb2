// savePresetDialog and its kin: the alerts by which the preset store asks and warns.
#pragma once

#include "library/bank_folder.h"
#include "platform/alert.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

// Names of banks are file names with extension. Everything is MAIN.

/// One button, which does nothing.
Alert warning(const std::string& message, const std::string& button = "Ok");

using TypedText = std::function<void(const std::string& typed)>;

/// overwrite is offered unless it is empty.
Alert savePresetDialog(const std::string& bank, TypedText save, TypedText saveInBank,
                       std::function<void()> overwrite);

/// typed: the preset's name, empty for none.
Alert selectBankDialog(const std::string& typed, const std::vector<ListedBank>& banks,
                       const std::function<void(const std::string& bank)>& chosen);

Alert overwriteDialog(const std::string& preset, std::function<void()> yes);

/// kind: "Preset" or "Bank". name: without extension.
Alert renameDialog(const std::string& kind, const std::string& name, TypedText ok,
                   std::function<void()> cancel);

Alert deleteAllDialog(const std::string& bank, std::function<void()> yes);

/// For a bank that cannot be read, and into which something is to be saved.
Alert replaceBankDialog(const std::string& problem, std::function<void()> replace);

} // namespace zephyra
