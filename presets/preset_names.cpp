#include "presets/preset_names.h"

#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cstddef>
#include <optional>

namespace zephyra {

namespace {

using Snapshots = std::vector<BankSummary::Snapshot>;
using Texts = std::vector<std::string>;

std::string nearest(std::string_view typed, const Texts& names) {
    const std::vector<std::string_view> views(names.begin(), names.end());
    return "the nearest is " + inQuotes(nearestName(typed, views));
}

std::string withExtension(std::string_view name) {
    return std::string(name).append(".").append(kBankExtension);
}

/// The banks that typed names but for the case.
Texts banksInAnyCase(const std::vector<ListedBank>& banks, std::string_view typed) {
    const std::string plain = foldCase(typed), whole = foldCase(withExtension(typed));
    Texts found;
    for (const ListedBank& bank : banks)
        if (const std::string name = foldCase(bank.name); name == plain || name == whole)
            found.push_back(bank.name);
    return found;
}

/// A preset of any bank.
struct Tagged {
    std::string bank; ///< file name
    BankSummary::Snapshot snapshot;
};

/// Those of all banks that can be read.
std::vector<Tagged> allPresets(BankFolder& folder) {
    std::vector<Tagged> all;
    for (const ListedBank& bank : folder.list())
        if (const auto summary = folder.summary(bank.name))
            for (const BankSummary::Snapshot& one : summary.value()->snapshots)
                all.push_back({bank.name, one});
    return all;
}

template <typename IsCalled>
Texts banksOf(const std::vector<Tagged>& presets, const IsCalled& isCalled) {
    Texts banks;
    for (const Tagged& preset : presets)
        if (isCalled(preset.snapshot) && (banks.empty() || banks.back() != preset.bank))
            banks.push_back(preset.bank);
    return banks;
}

Texts banksWith(const std::vector<Tagged>& presets, std::string_view typed) {
    const std::string folded = foldCase(typed);
    Texts banks = banksOf(presets, [&](const auto& one) { return one.tag == typed; });
    if (banks.empty())
        banks = banksOf(presets, [&](const auto& one) { return one.foldedTag == folded; });
    return banks;
}

Texts quotedStems(Texts banks) {
    for (std::string& bank : banks) bank = inQuotes(stemOf(bank));
    return banks;
}

Failure noBank(BankFolder& folder, const std::vector<ListedBank>& banks, std::string_view typed) {
    const std::string none = "there is no bank " + inQuotes(typed) + "; ";
    if (const Texts having = banksWith(allPresets(folder), typed); !having.empty())
        return {none + spokenList(quotedStems(having)) + (having.size() > 1 ? " have" : " has") +
                " a preset of that name"};
    if (banks.empty())
        return {none + "none stands in " + folder.folders().shared.string() + " and " +
                folder.folders().resources.string()};
    Texts names;
    for (const ListedBank& bank : banks) names.emplace_back(stemOf(bank.name));
    return {none + nearest(typed, names) + " (`zephyra banks` lists all)"};
}

std::string listOf(const std::string& bank) {
    return " (`zephyra banks " + typedBank(bank) + "` lists all)";
}

/// The keys of what is called so in the way that is asked for.
template <typename IsCalled>
Texts keysOf(const Snapshots& snapshots, const IsCalled& isCalled) {
    Texts keys;
    for (const BankSummary::Snapshot& snapshot : snapshots)
        if (isCalled(snapshot)) keys.push_back(snapshot.key);
    return keys;
}

/// The number in the list that typed says, "3" or "#3", whether there is one or not.
std::optional<std::size_t> numberIn(std::string_view typed) {
    if (typed.starts_with('#')) typed.remove_prefix(1);
    const auto number = parseWhole(typed);
    if (!number) return std::nullopt;
    return static_cast<std::size_t>(*number);
}

/// Of the presets that typed names.
Texts keysTyped(const Snapshots& snapshots, std::string_view typed) {
    if (typed == kAllPresets) return keysOf(snapshots, [](const auto&) { return true; });
    const std::string folded = foldCase(typed);
    Texts keys = keysOf(snapshots, [&](const auto& one) { return one.tag == typed; });
    if (keys.empty())
        keys = keysOf(snapshots, [&](const auto& one) { return one.foldedTag == folded; });
    if (keys.empty()) keys = keysOf(snapshots, [&](const auto& one) { return one.key == typed; });
    if (const auto number = numberIn(typed);
        keys.empty() && number && *number > 0 && *number <= snapshots.size())
        keys.push_back(snapshots[*number - 1].key);
    return keys;
}

Failure noPreset(const std::string& bank, const Snapshots& snapshots, std::string_view typed) {
    if (snapshots.empty()) return {inQuotes(stemOf(bank)) + " holds no preset"};
    const std::string start = inQuotes(stemOf(bank)) + " has no preset " + inQuotes(typed) + "; ";
    if (numberIn(typed))
        return {start + "its presets are 1 to " + std::to_string(snapshots.size()) + listOf(bank)};
    Texts names;
    for (const BankSummary::Snapshot& snapshot : snapshots) names.push_back(snapshot.tag);
    return {start + nearest(typed, names) + listOf(bank)};
}

Failure ambiguous(const std::string& bank, const Snapshots& snapshots, const Texts& keys,
                  std::string_view typed) {
    constexpr std::size_t most = 4; // of many "<unnamed>" ones
    std::string numbers;
    for (std::size_t i = 0, named = 0; i < snapshots.size() && named < std::min(most, keys.size());
         ++i)
        if (snapshots[i].key == keys[named])
            numbers += (named++ == 0 ? "" : ", ") + std::to_string(i + 1);
    return {inQuotes(stemOf(bank)) + " has " + std::to_string(keys.size()) + " presets " +
            inQuotes(typed) + "; name one by its number: " + numbers +
            (keys.size() > most ? " and so on" : "")};
}

} // namespace

Result<std::string> findBank(BankFolder& folder, std::string_view typed) {
    const std::vector<ListedBank> banks = folder.list();
    const std::string whole = withExtension(typed);
    for (const std::string& name : // as it is listed, or as its file is called
         {std::string(typed), whole, typedFromBytes(typed), typedFromBytes(whole)})
        if (std::ranges::find(banks, name, &ListedBank::name) != banks.end()) return name;
    const Texts found = banksInAnyCase(banks, typed);
    if (found.empty()) return noBank(folder, banks, typed);
    if (found.size() == 1) return found[0];
    return Failure{std::to_string(found.size()) + " banks are called " + inQuotes(typed) +
                   " in some case, as " + inQuotes(found[0]) + " and " + inQuotes(found[1]) +
                   "; type the name of one as it stands"};
}

Result<std::string> findBankWith(BankFolder& folder, std::string_view typed) {
    const std::vector<Tagged> presets = allPresets(folder);
    Texts banks = banksWith(presets, typed);
    if (banks.size() == 1) return banks[0];
    if (banks.size() > 1)
        return Failure{"the banks " + spokenList(quotedStems(banks)) + " have a preset " +
                       inQuotes(typed) + "; add --bank and one of them"};
    const std::string none = "no bank has a preset " + inQuotes(typed);
    if (numberIn(typed)) return Failure{none + "; a number needs --bank, too"};
    if (presets.empty()) return Failure{none};
    Texts names;
    for (const Tagged& preset : presets) names.push_back(preset.snapshot.tag);
    return Failure{none + "; " + nearest(typed, names) + " (`zephyra banks --search` finds parts)"};
}

Result<Texts> findPresets(BankFolder& banks, const std::string& bank, std::string_view typed) {
    const auto summary = banks.summary(bank);
    if (!summary) return Failure{summary.message()};
    const Snapshots& snapshots = summary.value()->snapshots;
    Texts keys = keysTyped(snapshots, typed);
    if (typed == kAllPresets) return keys;
    if (keys.empty()) return noPreset(bank, snapshots, typed);
    if (keys.size() > 1) return ambiguous(bank, snapshots, keys, typed);
    return keys;
}

std::string typedBank(std::string_view bank) {
    return (bank.starts_with('-') ? "-- " : "") + inQuotes(stemOf(bank));
}

std::string presetWord(BankFolder& banks, const std::string& bank, const std::string& key) {
    const auto summary = banks.summary(bank);
    if (!summary) return key;
    const Snapshots& snapshots = summary.value()->snapshots;
    const auto preset = std::ranges::find(snapshots, key, &BankSummary::Snapshot::key);
    if (preset == snapshots.end()) return key;
    const auto isRight = [&](const std::string& word) {
        return word != kAllPresets && onOneLine(word) == word &&
               keysTyped(snapshots, word) == Texts{key};
    };
    if (isRight(preset->tag)) return preset->tag;
    if (isRight(key)) return key;
    const std::string number = std::to_string(preset - snapshots.begin() + 1);
    std::string sign = "#";
    while (!isRight(sign + number)) sign += '0'; // some preset is called so
    return sign + number;
}

} // namespace zephyra
