// openBank: a bank's file that somebody opens, as one of the shared folder's banks.
#pragma once

#include "library/bank_folder.h"
#include "platform/text/result.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// Where the file's presets stand now.
struct OpenedBank {
    std::string bank;        ///< file name
    std::string firstPreset; ///< its key in the listed order; empty for an empty bank
};

/// Opening asks nothing and replaces nothing: a bank with these very presets that is there already,
/// the factory's too, is the answer; else the file is copied, under its own name or, where another
/// bank has that, with a number behind it. Fails with one line that names the file. MAIN.
Result<OpenedBank> openBank(BankFolder& banks, const std::filesystem::path& file);

} // namespace zephyra
