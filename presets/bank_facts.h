// BankFacts: what a list of banks tells of one besides its name.
#pragma once

#include "library/bank_file.h"

#include <cstddef>
#include <filesystem>
#include <set>
#include <string>

namespace zephyra {

/// Plain data; the numbers are of presets.
struct BankFacts {
    std::size_t presets = 0;
    std::size_t listening = 0;     ///< to the input
    std::size_t inTempo = 0;       ///< that follow the host's tempo
    std::size_t captured = 0;      ///< that play a captured sound
    std::set<std::string> samples; ///< file names of what the others play
};

/// What stands in the bank's records, without a look at any other file. MAIN, as the rest.
BankFacts bankFacts(const Bank& bank);

/// "Blackbird.mp3, 2 with live input, all follow the tempo"; empty for an empty bank.
std::string needsText(const BankFacts& facts);

/// What a bank is for, in its maker's words: the first line of the file NAME.about beside it, on
/// one line; empty where there is none.
std::string bankPurpose(const std::filesystem::path& bankFile);

} // namespace zephyra
