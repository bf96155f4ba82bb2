// CheckedBank: what is wrong with a bank's file, and a mended copy of it.
#pragma once

#include "library/bank_file.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// One thing that is wrong.
struct BankFinding {
    std::string
        key; ///< the path of the key, as "3 - 15.11.2026 | 13:48:53.Density_0"; may be empty
    std::string text;         ///< what is wrong, and what would be right
    bool fatal = false;       ///< the bank cannot be opened because of it
    bool isElsewhere = false; ///< in what a record refers to: the record itself is in order
};

/// What somebody who knows the records' contents has to say of one. MAIN.
using RecordCheck = std::function<std::vector<BankFinding>(const std::string& key,
                                                           const PropertyDictionary& record)>;
/// Told the share of the records that were checked, 0 to 1; false ends what the RecordCheck does.
using CheckProgress = std::function<bool(double share)>;

/// A file can be made to have millions; the last finding or note says how many were left off.
inline constexpr std::size_t kMostFindings = 1000;

struct MendedBank {
    Bank bank;
    std::size_t lost = 0;           ///< records of which nothing could be saved, as far as known
    std::vector<std::string> notes; ///< what was done, a line each
};

struct CheckedBank {
    std::vector<BankFinding> findings; ///< none for a sound bank
    /// A bank with every record that can be saved, also from a file that was cut off or damaged in
    /// places: whole records between damaged ones, display names where they are missing, without
    /// values that are wrong at a record's top. Nothing when no record can be found.
    std::optional<MendedBank> mended;
    bool isWhole = true; ///< false once progress ended it: more may be wrong, and unmended
};

/// Reads bytes once and each record once, in the order in which presets are listed. bytes are freed
/// before records are checked. MAIN; WORKER without a check.
CheckedBank checkBank(std::vector<std::byte> bytes, const RecordCheck& check = {},
                      const CheckProgress& progress = {});

} // namespace zephyra
