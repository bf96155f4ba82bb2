// renamingPreset and its kin: changes of presets that somebody saw, which meet no other preset.
#pragma once

#include "library/bank_change.h"
#include "platform/clock.h"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

// Another program's reorder gives keys to other presets. So every change carries the version of the
// bank that was seen (never null), and is refused with one line where a preset it concerns stands
// under another key by then, is another, or gone. Presets that came meanwhile stay. MAIN or WORKER.

/// What changes of one's own, carried out one after another, made of presets: who saw one before
/// them means it still. One thread at a time.
class OwnEdits {
public:
    void add(const std::string& key, const PropertyValue& before, const PropertyValue& after);
    /// Whether they alone made `to` of the preset `from`.
    bool lead(const std::string& key, const PropertyValue& from, const PropertyValue& to) const;

private:
    struct Edit {
        std::string key;
        PropertyValue before, after;
    };
    std::vector<Edit> edits_; // in their order
};

/// The version that was seen, and what was asked for meanwhile; null for nothing.
struct SeenBank {
    SeenBank(BankContent bank, std::shared_ptr<OwnEdits> edits = {})
        : content(std::move(bank)), own(std::move(edits)) {}

    BankContent content;
    std::shared_ptr<OwnEdits> own;
};

/// "3 - 15.11.2026 | 13:48:53", numbered on from the count until no preset has it: after a deletion
/// the count may name one that is there.
std::string freeSnapshotKey(const Bank& bank, const DateAndTime& now);

/// Leaves the bank alone, without a word, where a preset has the name already.
BankChange renamingPreset(SeenBank seen, std::string key, std::string name);

/// Values that state has are replaced, all others stay.
BankChange overwritingPreset(SeenBank seen, std::string key, PropertyDictionary state);

/// All of them or none.
BankChange deletingPresets(SeenBank seen, std::vector<std::string> keys);

/// Puts them in this order, see renumberedBank; refused, too, where any preset that was seen is
/// another by then.
BankChange orderingPresets(SeenBank seen, std::vector<std::string> order);

} // namespace zephyra
