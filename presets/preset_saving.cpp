#include "presets/preset_saving.h"

#include "library/bank_edits.h"
#include "library/preset_edits.h"
#include "platform/clock.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "presets/factory_banks.h"
#include "presets/picked_presets.h"

#include <string>

namespace zephyra {

namespace {

Failure nameIsTaken(const SavedPreset& saved) {
    return {std::string(stemOf(saved.bank)) + " has a preset " + inQuotes(saved.name) +
            " already; choose another name with --save-preset, or add --yes to replace it"};
}

/// The record that carries the name; null for none.
PropertyDictionary* recordNamed(Bank& bank, const std::string& name) {
    for (auto& [key, record] : bank)
        if (snapshotTag(record) == name) return record.as<PropertyDictionary>();
    return nullptr;
}

/// False, and nothing changed, where the name is taken.
bool put(Bank& bank, const SavedPreset& saved, const PropertyDictionary& snapshot,
         const DateAndTime& now) {
    PropertyDictionary* record = recordNamed(bank, saved.name);
    if (record && !saved.replaces) return false;
    if (!record) {
        const std::string key = freeSnapshotKey(bank, now);
        record =
            bank.insert_or_assign(key, PropertyDictionary{}).first->second.as<PropertyDictionary>();
    }
    for (const auto& [key, value] : snapshot) record->insert_or_assign(key, value);
    record->insert_or_assign(kSnapshotTags, saved.name);
    return true;
}

} // namespace

Result<void> checkPresetSaving(BankFolder& banks, const SavedPreset& saved) {
    if (!saved.replaces)
        if (auto own = checkIsNotTheFactorys(banks, saved.bank,
                                             "choose another name with --save-bank, or add --yes "
                                             "to change your copy of it");
            !own)
            return own;
    if (banks.locate(saved.bank).empty()) {
        const auto name = newBankName(stemOf(saved.bank));
        return name ? Result<void>() : Failure{"--save-bank: " + name.message()};
    }
    const auto bank = banks.read(saved.bank);
    if (!bank) return Failure{"--save-bank: " + bank.message()};
    if (hasSnapshotNamed(*bank.value(), saved.name) && !saved.replaces) return nameIsTaken(saved);
    return {};
}

Result<void> savePreset(BankFolder& banks, const SavedPreset& saved,
                        const PropertyDictionary& snapshot, const DateAndTime& now) {
    const BankFolder::Changed changed =
        banks.change(saved.bank, [&](Bank& bank) { return put(bank, saved, snapshot, now); });
    if (!changed.problem.empty()) return Failure{changed.problem};
    if (!changed.applied) return nameIsTaken(saved);
    return {};
}

} // namespace zephyra
