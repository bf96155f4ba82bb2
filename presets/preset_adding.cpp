#include "presets/preset_adding.h"

#include "library/bank_edits.h"
#include "platform/clock.h"
#include "platform/text/message_text.h"
#include "presets/picked_presets.h"

#include <cstddef>

namespace zephyra {

namespace {

/// Numbered on until no preset has the key: after a deletion the count names one that is there.
std::string freeKey(const Bank& bank, const DateAndTime& now) {
    std::size_t count = bank.size();
    std::string key = snapshotKey(count, now);
    while (bank.contains(key)) key = snapshotKey(++count, now);
    return key;
}

std::string freeName(const Bank& bank, const std::string& wanted) {
    std::string name = wanted;
    for (int count = 2; hasSnapshotNamed(bank, name); ++count)
        name = wanted + " " + std::to_string(count);
    return name;
}

/// Gives the record a name that is free; answers it.
std::string nameApart(const Bank& bank, PropertyDictionary& record) {
    std::string name = snapshotTag(record).value_or(kUnnamed);
    if (name == kUnnamed) return name;
    name = freeName(bank, name);
    record.insert_or_assign(kSnapshotTags, name);
    return name;
}

/// Answers the names.
std::vector<std::string> add(Bank& bank, std::vector<PropertyDictionary> records,
                             const DateAndTime& now) {
    std::vector<std::string> names, order = sortedKeys(bank);
    for (PropertyDictionary& record : records) {
        names.push_back(nameApart(bank, record));
        order.push_back(freeKey(bank, now));
        bank.insert_or_assign(order.back(), std::move(record));
    }
    // As text, a tenth key stands before a second one. Several at once keep their order.
    if (records.size() > 1 && order != sortedKeys(bank))
        bank = renumberedBank(std::move(bank), std::move(order));
    return names;
}

} // namespace

Result<std::vector<std::string>> addPresets(BankFolder& banks, const std::string& name,
                                            const std::vector<PropertyDictionary>& records,
                                            const DateAndTime& now) {
    std::vector<std::string> names;
    const BankFolder::Changed changed = banks.change(name, [&](Bank& bank) {
        names = add(bank, records, now); // it may run again on another version
        return true;
    });
    if (!changed.problem.empty()) return Failure{changed.problem};
    return names;
}

std::string addedText(const std::string& bank, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += onOneLine(inQuotes(name) + " is in " + quotedBank(bank)) + "\n";
    return text;
}

} // namespace zephyra
