// factoryBank and its kin: names that belong to banks which came with the program.
#pragma once

#include "library/bank_folder.h"
#include "platform/text/result.h"

#include <optional>
#include <string>

namespace zephyra {

// A bank of the user's takes the place of the factory's of its name, of which it begins as a copy
// where something is saved into it. A bank is its file name here. MAIN.

/// The bank of the resource folder that is called so, exactly or else in another case or Unicode
/// form; none where none is. Also one whose place a user's bank takes.
std::optional<std::string> factoryBank(const BankFolder& banks, const std::string& bank);

/// A failure, which says that bank is the factory's, and instead, where it would become the
/// user's: not where the user has a bank of the name already, whether bank's or the factory's.
Result<void> checkIsNotTheFactorys(const BankFolder& banks, const std::string& bank,
                                   const std::string& instead);

/// That for whoever adds presets to a bank.
inline constexpr const char* kCopyOfFactorys =
    "name another bank, or add --yes to change your copy of it";

/// The bank that is meant to be saved into: the factory's name where bank is that but for its case
/// or Unicode form, unless the user has one that is called exactly so.
std::string bankToSaveInto(const BankFolder& banks, const std::string& bank);

} // namespace zephyra
