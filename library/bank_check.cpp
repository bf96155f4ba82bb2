#include "library/bank_check.h"

#include "library/bank_edits.h"
#include "library/bank_rescue.h"
#include "platform/lists/property_path.h"

#include <algorithm>
#include <map>
#include <utility>

namespace zephyra {

namespace {

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Of XML that is not too large to look at.
RescuedBank rescued(std::span<const std::byte> bytes) {
    const bool isBinary = textOf(bytes).starts_with("bplist");
    if (isBinary || bytes.size() > kBankLimits.bytes) return {};
    return rescuedBank(textOf(bytes));
}

/// A display name in a message: on one line and not too long.
std::string shown(const std::string& name) {
    PropertyPath path;
    path.enterKey('"' + name);
    std::string text = path.failure("").message;
    text.resize(text.size() - 2); // ": "
    return text + '"';
}

/// The first kMostFindings of a list, and how many there are more.
template <typename Item>
class Capped {
public:
    void add(Item item) {
        if (items_.size() < kMostFindings)
            items_.push_back(std::move(item));
        else
            ++left_;
    }
    /// last says of a text what it is in an Item.
    std::vector<Item> take(Item (*last)(std::string text)) {
        if (left_ > 0) items_.push_back(last("and " + std::to_string(left_) + " more"));
        return std::move(items_);
    }

private:
    std::vector<Item> items_;
    std::size_t left_ = 0;
};

using Notes = Capped<std::string>;

class Check {
public:
    explicit Check(const RecordCheck& check) : check_(check) {}

    void records(const Bank& bank) {
        for (const std::string& key : sortedKeys(bank)) record(key, bank.find(key)->second);
    }
    void add(BankFinding finding) { findings_.add(std::move(finding)); }
    std::vector<BankFinding> take() {
        return findings_.take([](std::string text) { return BankFinding{{}, std::move(text)}; });
    }

private:
    void record(const std::string& key, const PropertyValue& value);
    void name(const std::string& key, const PropertyDictionary& record);

    const RecordCheck& check_;
    std::map<std::string, std::string> names_; // first key of each
    Capped<BankFinding> findings_;
};

void Check::record(const std::string& key, const PropertyValue& value) {
    if (key.find('-') == std::string::npos)
        add({key, "the key has no number and \" - \" before its rest; one as \"3 - 15.11.2026 | "
                  "13:48:53\" says where the preset stands"});
    const auto* const record = value.as<PropertyDictionary>();
    if (!record)
        return add(
            {key, std::string("a preset of type ") + value.typeName() + "; a dictionary is needed",
             true});
    name(key, *record);
    if (!check_) return;
    for (BankFinding& finding : check_(key, *record)) add(std::move(finding));
}

void Check::name(const std::string& key, const PropertyDictionary& record) {
    const auto tag = record.find(kSnapshotTags);
    if (tag == record.end())
        return add({key, std::string("the preset shows as ") + kUnnamed + "; a string " +
                             kSnapshotTags + " is needed"});
    const auto* const name = tag->second.as<std::string>();
    if (!name)
        return add({key + "." + kSnapshotTags, std::string("a display name of type ") +
                                                   tag->second.typeName() +
                                                   "; a string is needed"});
    const auto [first, isNew] = names_.emplace(*name, key);
    if (!isNew && *name != kUnnamed)
        add({key, "the display name " + shown(*name) + " is that of " + shown(first->second) +
                      ", too; each preset needs its own to be found by it"});
}

/// Takes out what findings name at the record's top.
void removeFound(const std::string& key, PropertyDictionary& record, const RecordCheck& check,
                 Notes& notes) {
    if (!check) return;
    for (const BankFinding& finding : check(key, record)) {
        if (!finding.key.starts_with(key + ".")) continue;
        const auto found = record.find(std::string_view(finding.key).substr(key.size() + 1));
        if (found == record.end()) continue;
        record.erase(found);
        notes.add(shown(finding.key) + " was left out: " + finding.text);
    }
}

/// Drops what is no preset and mends the others.
void mendRecords(MendedBank& mended, const RecordCheck& check, Notes& notes) {
    for (auto entry = mended.bank.begin(); entry != mended.bank.end();) {
        auto* const record = entry->second.as<PropertyDictionary>();
        if (!record) {
            ++mended.lost;
            notes.add(shown(entry->first) + " was left out: it is no preset");
            entry = mended.bank.erase(entry);
            continue;
        }
        removeFound(entry->first, *record, check, notes);
        if (!snapshotTag(entry->second)) {
            record->insert_or_assign(kSnapshotTags, kUnnamed);
            notes.add(shown(entry->first) + " was named " + kUnnamed);
        }
        ++entry;
    }
}

} // namespace

std::vector<BankFinding> checkBank(std::span<const std::byte> bytes, const RecordCheck& check) {
    Check checked(check);
    const auto value = readPropertyList(bytes, kBankLimits);
    if (!value) {
        checked.add({{}, value.message(), true});
        RescuedBank whole = rescued(bytes);
        for (BankFinding& lost : whole.damaged) checked.add(std::move(lost));
        checked.records(whole.bank);
        if (!whole.bank.empty())
            checked.add(
                {{},
                 (whole.bank.size() == 1
                      ? std::string("1 preset is whole, ")
                      : std::to_string(whole.bank.size()) + " presets are whole, the first is ") +
                     shown(sortedKeys(whole.bank).front()) + "; a mended copy can keep them"});
    } else if (const auto* const bank = value.value().as<PropertyDictionary>()) {
        checked.records(*bank);
    } else {
        checked.add({{},
                     std::string("at the top is a value of type ") + value.value().typeName() +
                         "; a dictionary of presets is needed",
                     true});
    }
    return checked.take();
}

std::optional<MendedBank> mendBank(std::span<const std::byte> bytes, const RecordCheck& check) {
    MendedBank mended;
    Notes notes;
    auto value = readPropertyList(bytes, kBankLimits);
    if (!value) {
        RescuedBank whole = rescued(bytes);
        mended.bank = std::move(whole.bank);
        mended.lost = whole.lost;
        for (const BankFinding& lost : whole.damaged) notes.add(shown(lost.key) + ": " + lost.text);
        if (mended.bank.empty()) return std::nullopt;
    } else if (auto* const bank = value.value().as<PropertyDictionary>()) {
        mended.bank = std::move(*bank);
    } else {
        return std::nullopt;
    }
    mendRecords(mended, check, notes);
    if (mended.bank.empty() && mended.lost > 0) return std::nullopt;
    mended.notes = notes.take([](std::string text) { return text; });
    return mended;
}

} // namespace zephyra
