// FoundPreset: what a search for presets and banks found.
#pragma once

#include "library/bank_folder.h"

#include <array>
#include <atomic>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// Bank file name, display name, snapshot key. Of a bank that was found by its own name: bank file
/// name, again, and "(Contains 3 Presets)".
using FoundPreset = std::array<std::string, 3>;

/// Every preset whose display name has text in it, and every bank whose file name has, whatever the
/// case: bank by bank in the order of list, a bank behind its presets. A bank that cannot be read
/// has no presets. Ends early once nobody wants the answer any more. MAIN or WORKER.
std::vector<FoundPreset> searchPresets(BankFolder& banks, const std::vector<ListedBank>& list,
                                       std::string_view text,
                                       const std::atomic<bool>& cancelled = false);

} // namespace zephyra
