#include "library/bank_edits.h"

#include "platform/clock.h"
#include "platform/text/names.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <utility>

namespace zephyra {

std::string snapshotKey(std::size_t count, const DateAndTime& now) {
    return std::to_string(count) + " - " + now.date + " | " + now.time;
}

void sortKeys(std::vector<std::string>& keys) {
    // Folded once each: a comparison of folded and then of plain text is one of such pairs.
    std::vector<std::pair<std::string, std::string>> folded;
    folded.reserve(keys.size());
    for (std::string& key : keys) {
        std::string fold = foldCase(key);
        folded.emplace_back(std::move(fold), std::move(key));
    }
    std::sort(folded.begin(), folded.end());
    for (std::size_t i = 0; i < keys.size(); ++i) keys[i] = std::move(folded[i].second);
}

std::vector<std::string> sortedKeys(const Bank& bank) {
    std::vector<std::string> keys;
    keys.reserve(bank.size());
    for (const auto& entry : bank) keys.push_back(entry.first);
    sortKeys(keys);
    return keys;
}

std::optional<std::string> snapshotTag(const PropertyValue& record) {
    const auto* const dictionary = record.as<PropertyDictionary>();
    if (!dictionary) return std::nullopt;
    const auto tag = dictionary->find(kSnapshotTags);
    if (tag == dictionary->end()) return std::nullopt;
    const auto* const text = tag->second.as<std::string>();
    return text ? std::optional(*text) : std::nullopt;
}

std::optional<std::string> snapshotTag(const Bank& bank, std::string_view key) {
    const auto record = bank.find(key);
    return record == bank.end() ? std::nullopt : snapshotTag(record->second);
}

bool hasSnapshotNamed(const Bank& bank, std::string_view name) {
    return std::any_of(bank.begin(), bank.end(),
                       [name](const auto& entry) { return snapshotTag(entry.second) == name; });
}

PropertyDictionary* recordOf(Bank& bank, std::string_view key) {
    const auto record = bank.find(key);
    return record == bank.end() ? nullptr : record->second.as<PropertyDictionary>();
}

const PropertyDictionary* recordOf(const Bank& bank, std::string_view key) {
    const auto record = bank.find(key);
    return record == bank.end() ? nullptr : record->second.as<PropertyDictionary>();
}

namespace {

/// What stays of a key when its number changes.
std::string_view withoutNumber(std::string_view key) {
    const std::size_t dash = key.find('-');
    if (dash == std::string_view::npos) return key;
    key.remove_prefix(dash + 1);
    if (key.starts_with(' ')) key.remove_prefix(1);
    return key;
}

} // namespace

Bank renumberedBank(Bank bank, std::vector<std::string> keys) {
    Bank renumbered;
    const auto moveOver = [&](const std::string& key) {
        const auto record = bank.find(key);
        if (record == bank.end()) return; // named twice, or gone meanwhile
        const float number = static_cast<float>(renumbered.size()) * 0.001f;
        std::string newKey = formatFixed(double{number}, 3) + " - ";
        newKey += withoutNumber(key);
        renumbered.insert_or_assign(std::move(newKey), std::move(record->second));
        bank.erase(record);
    };
    for (const std::string& key : keys) moveOver(key);
    for (const std::string& key : sortedKeys(bank)) moveOver(key);
    return renumbered;
}

} // namespace zephyra
