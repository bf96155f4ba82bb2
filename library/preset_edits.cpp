#include "library/preset_edits.h"

#include "library/bank_edits.h"
#include "platform/text/message_text.h"
#include "platform/text/result.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

Failure isAnother(const Bank& bank, const Bank& seen, const std::string& key) {
    const std::string name = inQuotes(snapshotTag(seen, key).value_or(kUnnamed));
    const auto record = seen.find(key);
    if (record == seen.end()) return {name + " is not in the bank; choose another preset"};
    const auto isSame = [&](const auto& entry) { return entry.second == record->second; };
    if (std::ranges::any_of(bank, isSame))
        return {name + " stands elsewhere in its bank meanwhile; look at it again and try again"};
    if (snapshotTag(bank, key) == snapshotTag(seen, key))
        return {name + " has been changed by another program; look at it again and try again"};
    return {name + " is not in its bank as it was any more: another program has changed or removed "
                   "it; look at the bank again"};
}

/// The record of key, which is as it was seen or as one's own changes have made it since.
Result<PropertyDictionary*> findSeen(Bank& bank, const SeenBank& seen, const std::string& key) {
    const auto before = seen.content->find(key);
    const auto now = bank.find(key);
    const auto isMeant = [&] {
        return now->second == before->second ||
               (seen.own && seen.own->lead(key, before->second, now->second));
    };
    if (before == seen.content->end() || now == bank.end() || !isMeant())
        return isAnother(bank, *seen.content, key);
    if (auto* const record = now->second.as<PropertyDictionary>()) return record;
    return isAnother(bank, *seen.content, key);
}

/// Changes the record as edit does, where edit answers true.
template <typename Edit>
ChangeAnswer editSeen(Bank& bank, const SeenBank& seen, const std::string& key, const Edit& edit) {
    const auto record = findSeen(bank, seen, key);
    if (!record) return Failure{record.message()};
    const PropertyValue before = *record.value();
    if (!edit(*record.value())) return false;
    if (seen.own) seen.own->add(key, before, *record.value());
    return true;
}

} // namespace

std::string freeSnapshotKey(const Bank& bank, const DateAndTime& now) {
    std::size_t count = bank.size();
    std::string key = snapshotKey(count, now);
    while (bank.contains(key)) key = snapshotKey(++count, now);
    return key;
}

void OwnEdits::add(const std::string& key, const PropertyValue& before,
                   const PropertyValue& after) {
    edits_.push_back({key, before, after});
}

bool OwnEdits::lead(const std::string& key, const PropertyValue& from,
                    const PropertyValue& to) const {
    const PropertyValue* reached = &from;
    for (const Edit& edit : edits_) {
        if (edit.key != key || edit.before != *reached) continue;
        reached = &edit.after;
        if (*reached == to) return true; // what follows was tried, to be shown, and waits
    }
    return false;
}

BankChange renamingPreset(SeenBank seen, std::string key, std::string name) {
    return [seen = std::move(seen), key = std::move(key), name = std::move(name)](Bank& bank) {
        return editSeen(bank, seen, key, [&](PropertyDictionary& record) {
            if (hasSnapshotNamed(bank, name)) return false;
            record.insert_or_assign(kSnapshotTags, name);
            return true;
        });
    };
}

BankChange overwritingPreset(SeenBank seen, std::string key, PropertyDictionary state) {
    return [seen = std::move(seen), key = std::move(key), state = std::move(state)](Bank& bank) {
        return editSeen(bank, seen, key, [&](PropertyDictionary& record) {
            for (const auto& [name, value] : state) record.insert_or_assign(name, value);
            return true;
        });
    };
}

BankChange deletingPresets(SeenBank seen, std::vector<std::string> keys) {
    return [seen = std::move(seen), keys = std::move(keys)](Bank& bank) -> ChangeAnswer {
        for (const std::string& key : keys)
            if (const auto record = findSeen(bank, seen, key); !record)
                return Failure{record.message()};
        for (const std::string& key : keys) bank.erase(key);
        return !keys.empty();
    };
}

BankChange orderingPresets(SeenBank seen, std::vector<std::string> order) {
    return [seen = std::move(seen), order = std::move(order)](Bank& bank) -> ChangeAnswer {
        for (const auto& entry : *seen.content)
            if (const auto record = findSeen(bank, seen, entry.first); !record)
                return Failure{record.message()};
        bank = renumberedBank(std::move(bank), order);
        return true;
    };
}

} // namespace zephyra
