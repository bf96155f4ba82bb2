#include "library/bank_mending.h"

#include "library/bank_edits.h"
#include "platform/lists/property_path.h"

#include <iterator>
#include <string_view>
#include <utility>

namespace zephyra {

std::string shownKey(const std::string& name) {
    PropertyPath path;
    path.enterKey('"' + name);
    std::string text = path.failure("").message;
    text.resize(text.size() - 2); // ": "
    return text + '"';
}

BankMending::BankMending(const std::vector<BankFinding>& damaged) : noted_(damaged.size()) {
    for (const BankFinding& lost : damaged) first_.push_back(shownKey(lost.key) + ": " + lost.text);
}

void BankMending::leaveOut(const std::string& key) {
    note(key, shownKey(key) + " was left out: it is no preset");
}

void BankMending::mend(const std::string& key, PropertyValue& record,
                       const std::vector<BankFinding>& findings) {
    auto& values = *record.as<PropertyDictionary>();
    for (const BankFinding& finding : findings) {
        if (finding.isElsewhere || !finding.key.starts_with(key + ".")) continue;
        const auto found = values.find(std::string_view(finding.key).substr(key.size() + 1));
        if (found == values.end()) continue;
        values.erase(found);
        note(key, shownKey(finding.key) + " was left out: " + finding.text);
    }
    if (snapshotTag(record)) return;
    values.insert_or_assign(kSnapshotTags, kUnnamed);
    note(key, shownKey(key) + " was named " + kUnnamed);
}

/// A file can be made to need millions, of which the last by key are not kept.
void BankMending::note(const std::string& key, std::string text) {
    ofRecords_[key].push_back(std::move(text));
    if (++noted_ <= kMostFindings) return;
    ++left_;
    const auto last = std::prev(ofRecords_.end());
    last->second.pop_back();
    if (last->second.empty()) ofRecords_.erase(last);
}

std::vector<std::string> BankMending::takeNotes() {
    std::vector<std::string> notes = std::move(first_);
    for (auto& [key, ofRecord] : ofRecords_)
        std::move(ofRecord.begin(), ofRecord.end(), std::back_inserter(notes));
    if (left_ > 0) notes.push_back("and " + std::to_string(left_) + " more");
    return notes;
}

} // namespace zephyra
