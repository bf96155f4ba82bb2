// What stands in the two folders: listing and reading banks.

#include "library/bank_folder.h"

#include "library/bank_name.h"
#include "library/bank_place.h"
#include "platform/files/file_calls.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <set>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

using Content = BankCache::Content;

BankFolder::BankFolder(const Folders& folders, std::shared_ptr<BankCache> cache)
    : folders_(folders), cache_(std::move(cache)) {}

std::vector<ListedBank> BankFolder::list() const {
    std::set<std::string> users;
    std::error_code ignored;
    for (const std::string& file : file_calls::list(folders_.shared, ignored)) // samples, too
        if (auto name = bankNameOf(file)) users.insert(std::move(*name));
    {
        const std::lock_guard lock(mutex_);
        for (const auto& entry : unwritten_) users.insert(entry.first);
        for (const auto& entry : meanwhile_) users.insert(entry.first);
    }
    std::vector<ListedBank> banks;
    for (const std::string& name : users) banks.push_back({name});
    for (const std::string& file : folderEntries(folders_.resources))
        if (auto name = bankNameOf(file); name && !users.contains(*name))
            banks.push_back({std::move(*name), kFactoryMarker});
    std::ranges::sort(banks, {}, &ListedBank::name);
    return banks;
}

fs::path BankFolder::locate(const std::string& name) const {
    if (!isBankName(name)) return {};
    const std::string file = bankFileName(name);
    for (const fs::path& folder : {folders_.shared, folders_.resources})
        if (!folder.empty() && isThere(folder / file)) return folder / file;
    return {};
}

bool BankFolder::isInSharedFolder(const std::string& name) const {
    return isBankName(name) && !folders_.shared.empty() && isThere(shared(name));
}

Result<Content> BankFolder::read(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    if (auto kept = unwrittenOf(name)) {
        const Start start = startOf(name, nullptr);
        if (start.problem.empty() && start.content != kept->base) {
            kept->isGuess = false;
            kept->rebase(start.content, UnwrittenChanges::For::reading);
            keepUnwritten(name, kept);
        }
        return kept->shown;
    }
    return fetch(name);
}

Result<Content> BankFolder::fetch(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    const fs::path path = locate(name);
    return cache_->read(path.empty() ? shared(name) : path);
}

std::optional<Result<Content>> BankFolder::known(const std::string& name) {
    {
        const std::lock_guard lock(mutex_);
        if (const auto waiting = meanwhile_.find(name); waiting != meanwhile_.end())
            return waiting->second.content;
        if (const auto kept = unwritten_.find(name); kept != unwritten_.end())
            return kept->second.shown;
    }
    if (!isBankName(name)) return Failure{kInvalidName};
    const fs::path path = locate(name);
    return cache_->known(path.empty() ? shared(name) : path);
}

std::shared_ptr<const BankSummary> BankFolder::summaryOf(const std::string& name,
                                                         const Content& content) const {
    {
        const std::lock_guard lock(mutex_);
        if (const auto waiting = meanwhile_.find(name);
            waiting != meanwhile_.end() && waiting->second.content == content)
            return waiting->second.summary;
    }
    const fs::path path = locate(name);
    return cache_->summaryOf(path.empty() ? shared(name) : path, content);
}

Result<std::shared_ptr<const BankSummary>> BankFolder::summary(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    if (const auto kept = unwrittenOf(name))
        return std::make_shared<const BankSummary>(summarize(*kept->shown));
    const fs::path path = locate(name);
    return cache_->summary(path.empty() ? shared(name) : path);
}

bool BankFolder::isInMemory(const std::string& name) const {
    const std::lock_guard lock(mutex_);
    return unwritten_.contains(name) || meanwhile_.contains(name);
}

std::optional<UnwrittenChanges> BankFolder::unwrittenOf(const std::string& name) const {
    const std::lock_guard lock(mutex_);
    const auto kept = unwritten_.find(name);
    return kept == unwritten_.end() ? std::nullopt : std::optional(kept->second);
}

/// Nothing takes what there was away.
void BankFolder::keepUnwritten(const std::string& name, std::optional<UnwrittenChanges> changes) {
    const std::lock_guard lock(mutex_);
    auto before = unwritten_.extract(name); // freed behind the lock
    if (changes) unwritten_.emplace(name, std::move(*changes));
}

} // namespace zephyra
