// addPresets: gives a bank presets from somewhere else.
#pragma once

#include "library/bank_folder.h"
#include "platform/clock.h"
#include "platform/lists/property_list.h"
#include "platform/text/result.h"

#include <string>
#include <vector>

namespace zephyra {

/// Adds records to the bank, which is made when missing, behind the presets there and under keys of
/// their own, made now. Answers their display names: one that is taken gets a number behind it.
/// Fails with one line, and nothing is added. MAIN.
Result<std::vector<std::string>> addPresets(BankFolder& banks, const std::string& bank,
                                            const std::vector<PropertyDictionary>& records,
                                            const DateAndTime& now);

/// "Haze 2" is in "Clouds": a line each, with line ends.
std::string addedText(const std::string& bank, const std::vector<std::string>& names);

} // namespace zephyra
