// findBank, findBankWith and findPresets: which bank and preset a typed name means.
#pragma once

#include "library/bank_folder.h"
#include "platform/text/result.h"

#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// What typed instead of a preset's name means all of a bank.
inline constexpr const char* kAllPresets = "*";

/// The file name of the bank that typed names, with or without extension: exactly, or in another
/// case when only one is called so. Fails with one line that tells the nearest name. MAIN.
Result<std::string> findBank(BankFolder& banks, std::string_view typed);

/// The file name of the one bank that has a preset of the display name typed: exactly, or in
/// another case where none is called exactly so. Fails with one line when none has, or more than
/// one. MAIN.
Result<std::string> findBankWith(BankFolder& banks, std::string_view typed);

/// The keys of the presets of bank (a file name) that typed names: a display name, exactly or in
/// another case; a key; a number from 1 in the listed order, also as "#3"; kAllPresets
/// for all of them, in that order. Never none, except by that. Fails with one line when there is
/// none or more than one of that name. MAIN.
Result<std::vector<std::string>> findPresets(BankFolder& banks, const std::string& bank,
                                             std::string_view typed);

/// "Clouds", or -- "-Clouds": the bank, a file name, as a command line has it, for messages.
std::string typedBank(std::string_view bank);

/// What names the preset of that key, and no other, for findPresets: its display name if that does,
/// else the key, else its number in the list. Without control characters. MAIN.
std::string presetWord(BankFolder& banks, const std::string& bank, const std::string& key);

} // namespace zephyra
