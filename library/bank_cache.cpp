#include "library/bank_cache.h"

#include "library/bank_edits.h"
#include "platform/files/file_calls.h"
#include "platform/files/whole_file.h"
#include "platform/text/names.h"
#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// Whether it is certain that path, which has this stamp, is nothing that readBank would open. All
/// else that hinders reading may pass without a new stamp.
bool canBeNoBank(const fs::path& path, const FileStamp& stamp) {
    std::error_code error;
    const fs::file_status status = file_calls::status(path, error);
    if (error || status.type() == fs::file_type::not_found) return false;
    return !fs::is_regular_file(status) || stamp.bytes > kBankLimits.bytes;
}

} // namespace

BankSummary summarize(const Bank& bank) {
    BankSummary summary;
    summary.snapshots.reserve(bank.size());
    for (std::string& key : sortedKeys(bank)) {
        const auto tag = snapshotTag(bank, key);
        std::string shown = tag.value_or(kUnnamed);
        std::string folded = foldCase(shown);
        summary.snapshots.push_back(
            {std::move(key), std::move(shown), std::move(folded), tag.has_value()});
    }
    return summary;
}

Result<BankCache::Content> BankCache::read(const fs::path& path) {
    const auto found = entry(path, Wanted::content);
    if (!found) return Failure{found.message()};
    keepContent(path);
    return found.value()->content;
}

Result<std::shared_ptr<const BankSummary>> BankCache::summary(const fs::path& path) {
    const auto found = entry(path, Wanted::summary);
    if (!found) return Failure{found.message()};
    return found.value()->summary;
}

bool BankCache::isBroken(const fs::path& path) const {
    const auto known = entries_.find(path);
    return known != entries_.end() && !known->second.failure.empty();
}

BankCache::Content BankCache::lastContent(const fs::path& path) const {
    const auto known = entries_.find(path);
    return known == entries_.end() ? nullptr : known->second.content;
}

Result<BankCache::Entry*> BankCache::entry(const fs::path& path, Wanted wanted) {
    const auto known = entries_.find(path);
    if (known != entries_.end() && fileStamp(path) == known->second.stamp) {
        Entry& entry = known->second;
        if (!entry.failure.empty()) return Failure{entry.failure};
        if (wanted == Wanted::summary || entry.content) return &entry;
    }
    return readEntry(path, wanted);
}

Result<BankCache::Entry*> BankCache::readEntry(const fs::path& path, Wanted wanted) {
    const auto whole = readWholeFile(path, kBankLimits.bytes);
    if (!whole) return failed(path, whole.message());
    auto bank = readBank(whole.value().bytes, shownFile(path));
    Entry& entry = entries_[path];
    entry = {whole.value().stamp, nullptr, {}, nullptr};
    if (!bank) {
        entry.failure = bank.message();
        return Failure{entry.failure};
    }
    entry.summary = std::make_shared<const BankSummary>(summarize(bank.value()));
    if (wanted == Wanted::content)
        entry.content = std::make_shared<const Bank>(std::move(bank.value()));
    return &entry;
}

/// Remembers a file that is to blame itself. All else may be right in the next moment, and what was
/// known of the file stays known.
Failure BankCache::failed(const fs::path& path, const std::string& message) {
    const auto stamp = fileStamp(path);
    if (stamp && canBeNoBank(path, *stamp))
        entries_[path] = {*stamp, nullptr, message, nullptr};
    else if (isBroken(path))
        entries_.erase(path);
    return Failure{message};
}

/// Puts path first among those whose content is kept, and lets go of the last.
void BankCache::keepContent(const fs::path& path) {
    used_.remove(path);
    used_.push_front(path);
    if (used_.size() <= kKeptContents) return;
    if (const auto last = entries_.find(used_.back()); last != entries_.end())
        last->second.content = nullptr;
    used_.pop_back();
}

void BankCache::remember(const fs::path& path, Content content) {
    const auto stamp = fileStamp(path);
    if (!stamp || !content) return forget(path);
    auto summary = std::make_shared<const BankSummary>(summarize(*content));
    entries_[path] = {*stamp, std::move(summary), {}, std::move(content)};
    keepContent(path);
}

void BankCache::forget(const fs::path& path) {
    entries_.erase(path);
    used_.remove(path);
}

} // namespace zephyra
