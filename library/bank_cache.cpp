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
    return found.value().content;
}

Result<std::shared_ptr<const BankSummary>> BankCache::summary(const fs::path& path) {
    const auto found = entry(path, Wanted::summary);
    if (!found) return Failure{found.message()};
    return found.value().summary;
}

std::optional<Result<BankCache::Content>> BankCache::known(const fs::path& path) {
    const auto entry = kept(path, Wanted::content);
    if (!entry) return std::nullopt;
    if (!entry->failure.empty()) return Failure{entry->failure};
    keepContent(path);
    return entry->content;
}

std::shared_ptr<const BankSummary> BankCache::summaryOf(const fs::path& path,
                                                        const Content& content) const {
    const std::lock_guard lock(mutex_);
    const auto known = entries_.find(path);
    const bool isThis = known != entries_.end() && content && known->second.content == content;
    return isThis ? known->second.summary : nullptr;
}

bool BankCache::isBroken(const fs::path& path) const {
    const std::lock_guard lock(mutex_);
    const auto known = entries_.find(path);
    return known != entries_.end() && !known->second.failure.empty();
}

BankCache::Content BankCache::lastContent(const fs::path& path) const {
    const std::lock_guard lock(mutex_);
    const auto known = entries_.find(path);
    return known == entries_.end() ? nullptr : known->second.content;
}

Result<BankCache::Entry> BankCache::entry(const fs::path& path, Wanted wanted) {
    auto known = kept(path, wanted);
    if (!known) return readEntry(path, wanted);
    if (!known->failure.empty()) return Failure{known->failure};
    return std::move(*known);
}

/// Of the file as it stands there now; nothing where it would have to be read.
std::optional<BankCache::Entry> BankCache::kept(const fs::path& path, Wanted wanted) const {
    {
        const std::lock_guard lock(mutex_);
        if (!entries_.contains(path)) return std::nullopt;
    }
    const auto stamp = fileStamp(path);
    const std::lock_guard lock(mutex_);
    const auto known = entries_.find(path);
    if (known == entries_.end() || stamp != known->second.stamp) return std::nullopt;
    const Entry& entry = known->second;
    const bool has = !entry.failure.empty() || wanted == Wanted::summary || entry.content;
    return has ? std::optional(entry) : std::nullopt;
}

Result<BankCache::Entry> BankCache::readEntry(const fs::path& path, Wanted wanted) {
    const auto whole = readWholeFile(path, kBankLimits.bytes);
    if (!whole) return failed(path, whole.message());
    auto bank = readBank(whole.value().bytes, shownFile(path));
    Entry entry = {whole.value().stamp, nullptr, {}, nullptr};
    if (!bank) {
        entry.failure = bank.message();
        keep(path, std::move(entry));
        return Failure{bank.message()};
    }
    entry.summary = std::make_shared<const BankSummary>(summarize(bank.value()));
    if (wanted == Wanted::content)
        entry.content = std::make_shared<const Bank>(std::move(bank.value()));
    keep(path, entry);
    return entry;
}

/// Remembers a file that is to blame itself. All else may be right in the next moment, and what was
/// known of the file stays known.
Failure BankCache::failed(const fs::path& path, const std::string& message) {
    const auto stamp = fileStamp(path);
    if (stamp && canBeNoBank(path, *stamp))
        keep(path, {*stamp, nullptr, message, nullptr});
    else if (isBroken(path))
        forget(path);
    return Failure{message};
}

void BankCache::keep(const fs::path& path, Entry entry) {
    const std::lock_guard lock(mutex_);
    std::swap(entries_[path], entry); // what was kept is freed without the lock
}

/// Puts path first among those whose content is kept, and lets go of the last.
void BankCache::keepContent(const fs::path& path) {
    Content dropped; // freed without the lock
    const std::lock_guard lock(mutex_);
    used_.remove(path);
    used_.push_front(path);
    if (used_.size() <= kKeptContents) return;
    if (const auto last = entries_.find(used_.back()); last != entries_.end())
        dropped.swap(last->second.content);
    used_.pop_back();
}

void BankCache::remember(const fs::path& path, Content content) {
    const auto stamp = fileStamp(path);
    if (!stamp || !content) return forget(path);
    auto summary = std::make_shared<const BankSummary>(summarize(*content));
    keep(path, {*stamp, std::move(summary), {}, std::move(content)});
    keepContent(path);
}

void BankCache::forget(const fs::path& path) {
    Entry dropped; // freed without the lock
    const std::lock_guard lock(mutex_);
    if (const auto known = entries_.find(path); known != entries_.end())
        std::swap(dropped, known->second);
    entries_.erase(path);
    used_.remove(path);
}

} // namespace zephyra
