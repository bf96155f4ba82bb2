// BankFinding: what is wrong with a bank's file, and a mended copy of it.
#pragma once

#include "library/bank_file.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// One thing that is wrong.
struct BankFinding {
    std::string
        key; ///< the path of the key, as "3 - 15.11.2026 | 13:48:53.Density_0"; may be empty
    std::string text;   ///< what is wrong, and what would be right
    bool fatal = false; ///< the bank cannot be opened because of it
};

/// What somebody who knows the records' contents has to say of one. MAIN.
using RecordCheck = std::function<std::vector<BankFinding>(const std::string& key,
                                                           const PropertyDictionary& record)>;

/// A file can be made to have millions; the last finding or note says how many were left off.
inline constexpr std::size_t kMostFindings = 1000;

/// Everything that is wrong with a bank's bytes; nothing for a sound one. MAIN or WORKER.
std::vector<BankFinding> checkBank(std::span<const std::byte> bytes, const RecordCheck& check = {});

struct MendedBank {
    Bank bank;
    std::size_t lost = 0;           ///< records of which nothing could be saved, as far as known
    std::vector<std::string> notes; ///< what was done, a line each
};

/// A bank with every record that can be saved, also from a file that was cut off or damaged in
/// places: whole records between damaged ones, display names where they are missing, without values
/// that findings of `check` name at a record's top. Nothing when no record can be found. MAIN or
/// WORKER.
std::optional<MendedBank> mendBank(std::span<const std::byte> bytes, const RecordCheck& check = {});

} // namespace zephyra
