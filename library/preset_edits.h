// renamingPreset and its kin: changes of presets that somebody saw, which meet no other preset.
#pragma once

#include "library/bank_change.h"
#include "platform/clock.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

// Another program's reorder gives keys to other presets. So every change carries the version of the
// bank that was seen (never null), and is refused with one line where a preset it concerns stands
// under another key by then, is another, or gone. Presets that came meanwhile stay. MAIN or WORKER.

/// "3 - 15.11.2026 | 13:48:53", numbered on from the count until no preset has it: after a deletion
/// the count may name one that is there.
std::string freeSnapshotKey(const Bank& bank, const DateAndTime& now);

/// Leaves the bank alone, without a word, where a preset has the name already.
BankChange renamingPreset(BankContent seen, std::string key, std::string name);

/// Values that state has are replaced, all others stay.
BankChange overwritingPreset(BankContent seen, std::string key, PropertyDictionary state);

/// All of them or none.
BankChange deletingPresets(BankContent seen, std::vector<std::string> keys);

/// Puts them in this order, see renumberedBank; refused, too, where any preset that was seen is
/// another by then.
BankChange orderingPresets(BankContent seen, std::vector<std::string> order);

} // namespace zephyra
