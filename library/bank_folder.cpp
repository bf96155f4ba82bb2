#include "library/bank_folder.h"

#include "platform/files/backup_flag.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_lock.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Content = BankCache::Content;

constexpr const char* kInvalidName = "Invalid file name";

/// Whether something stands there; unknown counts as there, so that nothing is written over it.
bool isThere(const fs::path& path) {
    std::error_code ignored;
    return file_calls::status(path, ignored).type() != fs::file_type::not_found;
}

/// Takes the lock that every change of folder holds; the folder is made when missing.
std::error_code lockFolder(const fs::path& folder, FileLock& lock) {
    const std::error_code error = file_calls::makeFolders(folder);
    return error ? error : lock.lock(folder / BankFolder::kLockName);
}

Failure failure(const fs::path& path, const char* what, std::error_code error) {
    return Failure{shownFile(path) + " cannot be " + what + ": " + error.message()};
}

/// What change makes of it; null when it leaves the bank alone.
Content changed(const Content& content, const BankFolder::Change& change) {
    Bank copy = *content;
    return change(copy) ? std::make_shared<const Bank>(std::move(copy)) : nullptr;
}

Content emptyBank() {
    return std::make_shared<const Bank>();
}

/// name cut so that the suffix still fits in a file name, between two characters.
std::string withSuffix(const std::string& name, const std::string& suffix) {
    std::size_t length = std::min(name.size(), kMostFileNameBytes - suffix.size());
    const auto isInside = [&](std::size_t at) {
        return at < name.size() && (static_cast<unsigned char>(name[at]) & 0xc0) == 0x80;
    };
    while (length > 0 && isInside(length)) --length;
    return name.substr(0, length) + suffix;
}

/// Keeps the file under a name of its own that is no bank's.
std::error_code moveFileAside(const fs::path& path) {
    constexpr int most = 1000;
    std::error_code error;
    for (int count = 1; count <= most; ++count) {
        const std::string suffix =
            count == 1 ? ".unreadable" : ".unreadable " + std::to_string(count);
        const fs::path aside = path.parent_path() / withSuffix(path.filename().string(), suffix);
        error = file_calls::renameNew(path, aside);
        if (error != std::errc::file_exists) break;
    }
    return error;
}

} // namespace

BankFolder::BankFolder(const Folders& folders, std::shared_ptr<BankCache> cache)
    : folders_(folders), cache_(std::move(cache)) {}

std::vector<ListedBank> BankFolder::list() const {
    std::set<std::string> users;
    for (const std::string& file : folderEntries(folders_.shared))
        if (auto name = bankNameOf(file)) users.insert(std::move(*name));
    for (const auto& entry : unwritten_) users.insert(entry.first);

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

// --- reading ---

Result<Content> BankFolder::read(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    const auto unwritten = unwritten_.find(name);
    if (unwritten != unwritten_.end()) {
        Unwritten& kept = unwritten->second;
        const Start start = startOf(name, nullptr);
        if (start.problem.empty() && start.content != kept.base) {
            kept.isGuess = false;
            rebase(kept, start.content);
        }
        return kept.shown;
    }
    const fs::path path = locate(name);
    return cache_->read(path.empty() ? shared(name) : path);
}

Result<std::shared_ptr<const BankSummary>> BankFolder::summary(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    if (hasUnwritten(name)) {
        const auto shown = read(name);
        if (!shown) return Failure{shown.message()};
        return std::make_shared<const BankSummary>(summarize(*shown.value()));
    }
    const fs::path path = locate(name);
    return cache_->summary(path.empty() ? shared(name) : path);
}

void BankFolder::rebase(Unwritten& unwritten, const Content& base) {
    unwritten.base = unwritten.shown = base;
    for (const Change& change : unwritten.changes)
        if (Content next = changed(unwritten.shown, change)) unwritten.shown = std::move(next);
}

// --- changing ---

/// What the bank's next version is made from.
BankFolder::Start BankFolder::startOf(const std::string& name, const Content& fallback) {
    const auto unwritten = unwritten_.find(name);
    const Content missing = unwritten != unwritten_.end() ? unwritten->second.base
                            : fallback                    ? fallback
                                                          : emptyBank();
    fs::path path = shared(name);
    if (!isInSharedFolder(name)) {
        path = folders_.resources / bankFileName(name);
        const bool isFactory = !folders_.resources.empty() && isThere(path);
        const bool isBaseKnown =
            unwritten != unwritten_.end() ? !unwritten->second.isGuess : fallback != nullptr;
        if (isBaseKnown || !isFactory) return {missing, {}, {}};
    }
    const auto onDisk = cache_->read(path);
    if (onDisk) return {onDisk.value(), {}, {}};
    if (cache_->isBroken(path)) return {missing, path, onDisk.message()};
    // It may be readable again in the next moment; until then what was known of it is shown.
    const Content known = cache_->lastContent(path);
    return {known ? known : missing, {}, onDisk.message()};
}

BankFolder::Changed BankFolder::change(const std::string& name, Change change, Content fallback,
                                       Unreadable unreadable) {
    const bool isKnown = fallback || !locate(name).empty() || hasUnwritten(name);
    if (!isBankName(name) || !(isKnown || isNewBankName(name)))
        return {nullptr, kInvalidName, true, false};
    FileLock lock;
    const std::error_code locking = lockFolder(folders_.shared, lock);
    std::string problem = locking ? failure(shared(name), "written", locking).message : "";

    Start start = startOf(name, fallback);
    if (!start.broken.empty()) {
        if (unreadable == Unreadable::refuse || locking)
            return {nullptr, start.problem, true, false};
        // A factory's bank stays where it is: the new one hides it.
        if (start.broken == shared(name))
            if (const auto moved = moveAside(start.broken); !moved)
                return {nullptr, moved.message(), true, false};
        start = {hasUnwritten(name) ? start.content : emptyBank(), {}, {}};
    }
    if (problem.empty()) problem = start.problem;

    Unwritten next{start.content, {}, start.content, !start.problem.empty()};
    if (const auto known = unwritten_.find(name); known != unwritten_.end()) {
        next.changes = known->second.changes;
        if (known->second.base == start.content)
            next.shown = known->second.shown;
        else
            rebase(next, start.content);
    }
    return finish(name, std::move(next), std::move(change), std::move(problem));
}

BankFolder::Changed BankFolder::finish(const std::string& name, Unwritten known, Change change,
                                       std::string problem) {
    Content content = changed(known.shown, change);
    if (!content) return {known.shown, settle(name, known, std::move(problem)), false, false};
    Unwritten next = known;
    next.shown = content;
    next.changes.push_back(std::move(change));
    problem = settle(name, std::move(next), std::move(problem));
    if (problem.empty()) return {content, {}, false, true};

    // Kept, a change that is itself to blame would stand in the way of every later one.
    const auto possible = canBeWritten(*content);
    if (!possible && canBeWritten(*known.shown)) {
        unwritten_.erase(name);
        if (!known.changes.empty()) unwritten_.insert_or_assign(name, known);
        problem = shownFile(shared(name)) + " cannot be written: " + possible.message();
        return {known.shown, std::move(problem), false, false};
    }
    return {content, std::move(problem), false, true};
}

/// Writes what next shows, unless a problem stands against it; keeps it in memory if that fails.
/// Answers the problem there is.
std::string BankFolder::settle(const std::string& name, Unwritten next, std::string problem) {
    if (next.shown == next.base) { // nothing is left to write
        if (problem.empty()) unwritten_.erase(name);
        return problem;
    }
    if (problem.empty()) {
        const auto written = writeBank(shared(name), *next.shown);
        if (written) {
            cache_->remember(shared(name), next.shown);
            unwritten_.erase(name);
            return {};
        }
        problem = written.message();
    }
    unwritten_.insert_or_assign(name, std::move(next));
    return problem;
}

BankFolder::Changed BankFolder::retry(const std::string& name) {
    return change(name, [](Bank&) { return false; });
}

void BankFolder::retryAll() {
    const auto waiting = unwritten_; // from which a retry takes its bank
    for (const auto& entry : waiting) static_cast<void>(retry(entry.first));
}

Result<void> BankFolder::moveAside(const fs::path& path) {
    if (const std::error_code error = moveFileAside(path)) return failure(path, "renamed", error);
    cache_->forget(path);
    return {};
}

// --- whole banks ---

Result<bool> BankFolder::create(const std::string& name, const Bank& content) {
    if (!isNewBankName(name)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = lockFolder(folders_.shared, lock))
        return failure(shared(name), "written", error);
    if (hasUnwritten(name)) return false;
    return createBank(shared(name), content);
}

Result<bool> BankFolder::rename(const std::string& from, const std::string& to) {
    if (!isBankName(from) || !(isNewBankName(to) || to == from)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = lockFolder(folders_.shared, lock))
        return failure(shared(from), "renamed", error);
    if (hasUnwritten(to) || isInSharedFolder(to)) return false;

    const std::error_code error = file_calls::renameNew(shared(from), shared(to));
    if (error == std::errc::file_exists) return false;
    const bool isMissing = error == std::errc::no_such_file_or_directory;
    if (error && !isMissing) return failure(shared(from), "renamed", error);
    if (isMissing && !hasUnwritten(from)) return false;
    if (!error) static_cast<void>(skipBackupiCloudForItemAtURL_skip(shared(to), false));
    cache_->forget(shared(from));
    cache_->forget(shared(to));
    if (auto unwritten = unwritten_.extract(from)) {
        unwritten.key() = to;
        unwritten_.insert(std::move(unwritten));
    }
    return true;
}

Result<bool> BankFolder::remove(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = lockFolder(folders_.shared, lock))
        return failure(shared(name), "removed", error);
    const std::error_code error = file_calls::remove(shared(name));
    const bool isMissing = error == std::errc::no_such_file_or_directory;
    if (error && !isMissing) return failure(shared(name), "removed", error);
    cache_->forget(shared(name));
    const bool wasUnwritten = unwritten_.erase(name) > 0;
    return !isMissing || wasUnwritten;
}

} // namespace zephyra
