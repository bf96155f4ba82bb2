// Changing banks, and what cannot be written at once.

#include "library/bank_folder.h"
#include "library/bank_name.h"
#include "library/bank_place.h"
#include "platform/files/file_calls.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Content = BankCache::Content;

Failure failure(const fs::path& path, const char* what, const std::string& why) {
    return Failure{shownFile(path) + " cannot be " + what + ": " + why};
}

Content emptyBank() {
    return std::make_shared<const Bank>();
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

// --- the lock ---

/// Takes the lock that every change holds; the folder is made when missing.
std::error_code BankFolder::take(FileLock& lock, const std::function<void()>& meanwhile) const {
    if (const std::error_code error = file_calls::makeFolders(folders_.shared)) return error;
    LockWait wait = wait_;
    bool isTold = !meanwhile;
    wait.goesOn = [&] {
        if (!std::exchange(isTold, true)) meanwhile();
        return !wait_.goesOn || wait_.goesOn();
    };
    return lock.lock(folders_.shared / kLockName, wait);
}

Failure BankFolder::lockFailure(const std::string& name, const char* what,
                                std::error_code error) const {
    const auto why = lockProblem(folders_.shared / kLockName, error);
    if (error == std::errc::operation_canceled) return {why + "; no bank was changed"};
    return failure(shared(name), what, why);
}

// --- changing ---

/// What the bank's next version is made from.
BankFolder::Start BankFolder::startOf(const std::string& name, const Content& fallback) {
    const auto unwritten = unwrittenOf(name);
    const Content missing = unwritten ? unwritten->base : fallback ? fallback : emptyBank();
    fs::path path = shared(name);
    if (!isInSharedFolder(name)) {
        path = folders_.resources / bankFileName(name);
        const bool isFactory = !folders_.resources.empty() && isThere(path);
        const bool isBaseKnown = unwritten ? !unwritten->isGuess : fallback != nullptr;
        if (isBaseKnown || !isFactory) return {missing, {}, {}};
    }
    const auto onDisk = cache_->read(path);
    if (onDisk) return {onDisk.value(), {}, {}};
    if (cache_->isBroken(path)) return {missing, path, onDisk.message()};
    // It may be readable again in the next moment; until then what was known of it is shown.
    const Content known = cache_->lastContent(path);
    return {known ? known : missing, {}, onDisk.message()};
}

/// From now on known() has the change, which waits for the lock.
void BankFolder::showWith(const std::string& name, const Change& change, const Content& fallback) {
    const auto unwritten = unwrittenOf(name);
    const Start start = startOf(name, fallback);
    if (!start.broken.empty()) return;
    ChangedBank made = changedBank(unwritten ? unwritten->shown : start.content, change);
    if (!made.content) return;
    auto summary = std::make_shared<const BankSummary>(summarize(*made.content));
    const std::lock_guard lock(mutex_);
    meanwhile_.insert_or_assign(name, Meanwhile{std::move(made.content), std::move(summary)});
}

BankFolder::Changed BankFolder::change(const std::string& name, Change change, Content fallback,
                                       Unreadable unreadable) {
    return changeAndShow(name, std::move(change), std::move(fallback), unreadable, {});
}

BankFolder::Changed BankFolder::changeAndShow(const std::string& name, Change change,
                                              Content fallback, Unreadable unreadable,
                                              const std::function<void()>& meanwhile) {
    const bool isKnown = fallback || !locate(name).empty() || isInMemory(name);
    if (!isBankName(name) || !(isKnown || isNewBankName(name)))
        return {.content = nullptr, .problem = kInvalidName, .refused = true};
    std::function<void()> waiting;
    if (meanwhile)
        waiting = [&] {
            showWith(name, change, fallback);
            meanwhile();
        };
    FileLock lock;
    const std::error_code locking = take(lock, waiting);
    Changed made = changeLocked(name, std::move(change), fallback, unreadable, locking);
    const std::lock_guard guard(mutex_);
    const auto shown = meanwhile_.extract(name); // freed behind the lock
    return made;
}

/// locking: why the lock is not held; none when it is.
BankFolder::Changed BankFolder::changeLocked(const std::string& name, Change change,
                                             const Content& fallback, Unreadable unreadable,
                                             std::error_code locking) {
    std::string problem = locking ? lockFailure(name, "written", locking).message : "";
    if (locking == std::errc::operation_canceled) {
        const auto known = read(name);
        return {.content = known ? known.value() : nullptr, .problem = std::move(problem)};
    }
    Start start = startOf(name, fallback);
    if (!start.broken.empty()) {
        if (unreadable == Unreadable::refuse || locking)
            return {.content = nullptr, .problem = start.problem, .refused = true};
        // A factory's bank stays where it is: the new one hides it.
        if (start.broken == shared(name))
            if (const auto moved = moveAside(start.broken); !moved)
                return {.content = nullptr, .problem = moved.message(), .refused = true};
        start = {hasUnwritten(name) ? start.content : emptyBank(), {}, {}};
    }
    if (problem.empty()) problem = start.problem;

    UnwrittenChanges next{start.content, {}, start.content, !start.problem.empty()};
    std::vector<std::string> dropped;
    if (const auto known = unwrittenOf(name)) {
        using For = UnwrittenChanges::For;
        next.changes = known->changes;
        dropped = next.rebase(start.content, problem.empty() ? For::writing : For::reading);
    }
    Changed made = finish(name, std::move(next), std::move(change), std::move(problem));
    made.dropped = std::move(dropped);
    return made;
}

BankFolder::Changed BankFolder::finish(const std::string& name, UnwrittenChanges known,
                                       Change change, std::string problem) {
    ChangedBank made = changedBank(known.shown, change);
    if (!made.content) {
        problem = settle(name, known, std::move(problem));
        return {.content = known.shown,
                .problem = made.refusal.empty() ? std::move(problem) : std::move(made.refusal)};
    }
    UnwrittenChanges next = known;
    next.shown = made.content;
    next.changes.push_back(std::move(change));
    problem = settle(name, std::move(next), std::move(problem));
    if (problem.empty()) return {.content = made.content, .applied = true};

    // Kept, a change that is itself to blame would stand in the way of every later one.
    const auto possible = canBeWritten(*made.content);
    if (!possible && canBeWritten(*known.shown)) {
        keepUnwritten(name, known.changes.empty() ? std::nullopt : std::optional(known));
        return {.content = known.shown,
                .problem = failure(shared(name), "written", possible.message()).message};
    }
    return {.content = made.content, .problem = std::move(problem), .applied = true};
}

/// Writes what next shows, unless a problem stands against it; keeps it in memory if that fails.
/// Answers the problem there is.
std::string BankFolder::settle(const std::string& name, UnwrittenChanges next,
                               std::string problem) {
    if (next.shown == next.base) { // nothing is left to write
        if (problem.empty()) keepUnwritten(name, std::nullopt);
        return problem;
    }
    if (problem.empty()) {
        const auto written = writeBank(shared(name), *next.shown);
        if (written) {
            cache_->remember(shared(name), next.shown);
            keepUnwritten(name, std::nullopt);
            return {};
        }
        problem = written.message();
    }
    keepUnwritten(name, std::move(next));
    return problem;
}

BankFolder::Changed BankFolder::retry(const std::string& name) {
    return change(name, [](Bank&) { return false; });
}

std::vector<std::string> BankFolder::retryAll() {
    std::vector<std::string> names, dropped;
    {
        const std::lock_guard lock(mutex_);
        for (const auto& entry : unwritten_) names.push_back(entry.first);
    }
    for (const std::string& name : names)
        std::ranges::move(retry(name).dropped, std::back_inserter(dropped));
    return dropped;
}

Result<void> BankFolder::moveAside(const fs::path& path) {
    if (const std::error_code error = moveFileAside(path))
        return failure(path, "renamed", error.message());
    cache_->forget(path);
    return {};
}

} // namespace zephyra
