// addPresets and addWholeBank: presets from somewhere else.
#pragma once

#include "library/bank_folder.h"
#include "platform/clock.h"
#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <string>
#include <vector>

namespace zephyra {

/// Adds records to the bank, which is made when missing, behind the presets there and under keys of
/// their own, made now. Answers their display names: one that is taken gets a number behind it,
/// after a blank, also where it ends in one ("Haze 2" becomes "Haze 2 2"). Fails with one line, and
/// nothing is added. MAIN.
Result<std::vector<std::string>> addPresets(BankFolder& banks, const std::string& bank,
                                            const std::vector<PropertyDictionary>& records,
                                            const DateAndTime& now);

enum class IfTaken { refuse, replace };

/// A bank with that content, in one step under the folder's lock: whole, or not there. False, and
/// nothing changed, when the user has one of that name and it is not to be replaced; one that
/// cannot be read is kept under another name when it is. MAIN.
Result<bool> addWholeBank(BankFolder& banks, const std::string& name,
                          const BankCache::Content& content, IfTaken ifTaken);

/// "Haze 2" is in "Clouds": a line each, with line ends.
std::string addedText(const std::string& bank, const std::vector<std::string>& names);

} // namespace zephyra
