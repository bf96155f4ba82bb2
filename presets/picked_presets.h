// PickedPresets: the bank and the presets that a command line names.
#pragma once

#include "library/bank_folder.h"
#include "presets/preset_names.h"

#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Of one version of the bank.
struct PickedPresets {
    std::string bank; ///< file name
    BankCache::Content content;
    std::vector<std::string> keys; ///< of content, in the listed order
};

/// Fails with one line. MAIN.
Result<PickedPresets> pickPresets(BankFolder& banks, std::string_view bank,
                                  std::string_view preset);

/// The file name that a bank is to have, of a name with or without extension. Fails with one line
/// for what no file can be called. Any thread.
Result<std::string> newBankName(std::string_view typed);

/// The bank that typed names, or one that is still to be made where there is none. MAIN.
Result<std::string> findOrNameBank(BankFolder& banks, std::string_view typed);

/// A failure, which says what else to do, for a bank that came with the program. MAIN.
Result<void> checkIsUsersBank(const BankFolder& banks, const std::string& bank);

/// "Clouds": the name between quotes, without extension, for messages.
std::string quotedBank(std::string_view bank);

} // namespace zephyra
