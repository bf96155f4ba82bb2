// RescuedBank: the whole presets that still stand in a damaged bank.
#pragma once

#include "library/bank_check.h"
#include "library/bank_file.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace zephyra {

struct RescuedBank {
    Bank bank;
    std::vector<BankFinding> damaged; ///< presets that are not whole, the first kMostFindings
    std::size_t lost = 0;             ///< presets that are not in bank
};

/// Looks through the text of an XML property list, however damaged, for keys of its outermost
/// dictionary whose dictionaries are whole; a key that stands there twice gets a new name. Takes
/// time in proportion to the text. MAIN or WORKER.
RescuedBank rescuedBank(std::string_view text);

} // namespace zephyra
