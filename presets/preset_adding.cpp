#include "presets/preset_adding.h"

#include "library/bank_edits.h"
#include "library/preset_edits.h"
#include "platform/clock.h"
#include "platform/text/message_text.h"
#include "presets/picked_presets.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace zephyra {

namespace {

/// What is free in a bank that grows: each search goes on where the one before has ended, because
/// what was taken stays so. Thousands of presets of one name are added under the lock.
class FreePlaces {
public:
    FreePlaces(const Bank& bank, const DateAndTime& now) : bank_(bank), now_(now) {
        for (const auto& [key, record] : bank)
            if (auto name = snapshotTag(record)) names_.insert(std::move(*name));
    }

    /// Numbered on until no preset has the key: after a deletion the count names one that is there.
    std::string key() {
        count_ = std::max(count_, bank_.size());
        std::string key = snapshotKey(count_, now_);
        while (bank_.contains(key)) key = snapshotKey(++count_, now_);
        return key;
    }

    /// wanted, with a number behind it where it is taken; taken from now on.
    std::string name(const std::string& wanted) {
        std::string name = wanted;
        for (int& last = lastNumbers_.try_emplace(wanted, 1).first->second;
             !names_.insert(name).second;)
            name = wanted + " " + std::to_string(++last);
        return name;
    }

private:
    const Bank& bank_;
    const DateAndTime& now_;
    std::size_t count_ = 0;
    std::unordered_set<std::string> names_;
    std::unordered_map<std::string, int> lastNumbers_; // by the name that was wanted
};

/// Answers the names.
std::vector<std::string> add(Bank& bank, std::vector<PropertyDictionary> records,
                             const DateAndTime& now) {
    std::vector<std::string> names, order = sortedKeys(bank);
    FreePlaces free(bank, now);
    for (PropertyDictionary& record : records) {
        const std::string wanted = snapshotTag(record).value_or(kUnnamed);
        names.push_back(wanted == kUnnamed ? wanted : free.name(wanted));
        if (names.back() != wanted) record.insert_or_assign(kSnapshotTags, names.back());
        order.push_back(free.key());
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

Result<bool> addWholeBank(BankFolder& banks, const std::string& name,
                          const BankCache::Content& content, IfTaken ifTaken) {
    if (ifTaken == IfTaken::refuse) return banks.create(name, *content);
    const auto replace = [content](Bank& bank) {
        bank = *content;
        return true;
    };
    const auto changed = banks.change(name, replace, nullptr, BankFolder::Unreadable::moveAside);
    if (!changed.problem.empty()) return Failure{changed.problem};
    return true;
}

std::string addedText(const std::string& bank, const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += onOneLine(inQuotes(name) + " is in " + quotedBank(bank)) + "\n";
    return text;
}

} // namespace zephyra
