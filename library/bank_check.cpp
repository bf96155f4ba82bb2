#include "library/bank_check.h"

#include "library/bank_edits.h"
#include "library/bank_mending.h"
#include "library/bank_rescue.h"

#include <map>
#include <span>
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

/// Goes through a bank's records once: what is wrong in each is noted, and mended.
class Check {
public:
    explicit Check(const RecordCheck& check) : check_(check) {}

    void add(BankFinding finding) {
        if (findings_.size() < kMostFindings)
            findings_.push_back(std::move(finding));
        else
            ++left_;
    }
    /// False when progress has ended it; what takes no look into a record is found all the same.
    bool records(Bank& bank, BankMending& mending, const CheckProgress& progress);
    /// Once.
    std::vector<BankFinding> takeFindings() {
        if (left_ > 0) findings_.push_back({{}, "and " + std::to_string(left_) + " more"});
        return std::move(findings_);
    }
    std::size_t lost() const { return lost_; }

private:
    void record(Bank& bank, Bank::iterator entry, BankMending& mending, const RecordCheck& check);
    void name(const std::string& key, const PropertyDictionary& record);

    const RecordCheck& check_;
    std::map<std::string, std::string> names_; // first key of each
    std::vector<BankFinding> findings_;
    std::size_t left_ = 0; // findings beyond the most
    std::size_t lost_ = 0; // values that are no records
};

bool Check::records(Bank& bank, BankMending& mending, const CheckProgress& progress) {
    const std::vector<std::string> keys = sortedKeys(bank);
    std::size_t done = 0;
    static const RecordCheck kNone;
    bool goesOn = true;
    for (const std::string& key : keys) {
        const double share = static_cast<double>(done++) / static_cast<double>(keys.size());
        goesOn = goesOn && (!progress || progress(share));
        record(bank, bank.find(key), mending, goesOn ? check_ : kNone);
    }
    return goesOn;
}

void Check::record(Bank& bank, Bank::iterator entry, BankMending& mending,
                   const RecordCheck& check) {
    const std::string& key = entry->first;
    if (key.find('-') == std::string::npos)
        add({key, "the key has no number and \" - \" before its rest; one as \"3 - 15.11.2026 | "
                  "13:48:53\" says where the preset stands"});
    const auto* const record = entry->second.as<PropertyDictionary>();
    if (!record) {
        add({key,
             std::string("a preset of type ") + entry->second.typeName() +
                 "; a dictionary is needed",
             true});
        mending.leaveOut(key);
        bank.erase(entry);
        ++lost_;
        return;
    }
    name(key, *record);
    std::vector<BankFinding> findings;
    if (check) findings = check(key, *record);
    mending.mend(key, entry->second, findings);
    for (BankFinding& finding : findings) add(std::move(finding));
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
        add({key, "the display name " + shownKey(*name) + " is that of " + shownKey(first->second) +
                      ", too; each preset needs its own to be found by it"});
}

/// What stands in a bank's bytes, as far as it can be read.
struct FoundBank {
    RescuedBank whole;
    std::vector<BankFinding> findings; // of the list itself, ahead of the records'
    bool isBank = true;                // a dictionary, or what was saved of one
};

FoundBank bankIn(std::span<const std::byte> bytes) {
    FoundBank found;
    auto value = readPropertyList(bytes, kBankLimits);
    if (!value) {
        found.findings.push_back({{}, value.message(), true});
        found.whole = rescued(bytes);
        found.isBank = !found.whole.bank.empty();
    } else if (auto* const bank = value.value().as<PropertyDictionary>()) {
        found.whole.bank = std::move(*bank);
    } else {
        found.isBank = false;
        found.findings.push_back({{},
                                  std::string("at the top is a value of type ") +
                                      value.value().typeName() +
                                      "; a dictionary of presets is needed",
                                  true});
    }
    return found;
}

std::string wholePresetsText(const Bank& bank) {
    return (bank.size() == 1 ? std::string("1 preset is whole, ")
                             : std::to_string(bank.size()) + " presets are whole, the first is ") +
           shownKey(sortedKeys(bank).front()) + "; a mended copy can keep them";
}

} // namespace

CheckedBank checkBank(std::vector<std::byte> bytes, const RecordCheck& check,
                      const CheckProgress& progress) {
    FoundBank found = bankIn(bytes);
    bytes = {}; // which a check of thousands of records has no use for
    RescuedBank& whole = found.whole;
    const bool isRescued = !found.findings.empty() && found.isBank;
    const std::string rescuedText = isRescued ? wholePresetsText(whole.bank) : std::string();

    Check checked(check);
    BankMending mending(whole.damaged);
    for (BankFinding& finding : found.findings) checked.add(std::move(finding));
    for (BankFinding& lost : whole.damaged) checked.add(std::move(lost));
    CheckedBank result;
    result.isWhole = checked.records(whole.bank, mending, progress);
    if (isRescued) checked.add({{}, rescuedText});
    result.findings = checked.takeFindings();
    const std::size_t lost = whole.lost + checked.lost();
    if (found.isBank && !(whole.bank.empty() && lost > 0))
        result.mended = MendedBank{std::move(whole.bank), lost, mending.takeNotes()};
    return result;
}

} // namespace zephyra
