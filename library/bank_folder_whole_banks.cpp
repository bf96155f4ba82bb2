// Making, renaming and removing whole banks.

#include "library/bank_folder.h"
#include "library/bank_name.h"
#include "platform/files/backup_flag.h"
#include "platform/files/file_calls.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Content = BankCache::Content;

Failure failure(const fs::path& path, const char* what, std::error_code error) {
    return Failure{shownFile(path) + " cannot be " + what + ": " + error.message()};
}

} // namespace

void BankFolder::announce(const std::string& name) {
    const std::lock_guard lock(mutex_);
    meanwhile_.emplace(
        name, Meanwhile{std::make_shared<const Bank>(), std::make_shared<const BankSummary>()});
}

Result<bool> BankFolder::create(const std::string& name, const Bank& content) {
    if (!isNewBankName(name)) return Failure{kInvalidName};
    FileLock lock;
    const std::error_code error = take(lock);
    Result<bool> created = false;
    if (error)
        created = lockFailure(name, "written", error);
    else if (!hasUnwritten(name))
        created = createBank(shared(name), content);
    const std::lock_guard guard(mutex_);
    meanwhile_.erase(name);
    return created;
}

Result<bool> BankFolder::rename(const std::string& from, const std::string& to) {
    if (!isBankName(from) || !(isNewBankName(to) || to == from)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = take(lock)) return lockFailure(from, "renamed", error);
    if (hasUnwritten(to) || isInSharedFolder(to)) return false;

    const std::error_code error = file_calls::renameNew(shared(from), shared(to));
    if (error == std::errc::file_exists) return false;
    const bool isMissing = error == std::errc::no_such_file_or_directory;
    if (error && !isMissing) return failure(shared(from), "renamed", error);
    auto unwritten = unwrittenOf(from);
    if (isMissing && !unwritten) return false;
    if (!error) static_cast<void>(skipBackupiCloudForItemAtURL_skip(shared(to), false));
    cache_->forget(shared(from));
    cache_->forget(shared(to));
    keepUnwritten(to, std::move(unwritten));
    keepUnwritten(from, std::nullopt);
    return true;
}

Result<bool> BankFolder::remove(const std::string& name) {
    if (!isBankName(name)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = take(lock)) return lockFailure(name, "removed", error);
    return removeLocked(name);
}

Result<bool> BankFolder::remove(const std::string& name, const Content& seen) {
    if (!isBankName(name)) return Failure{kInvalidName};
    FileLock lock;
    if (const std::error_code error = take(lock)) return lockFailure(name, "removed", error);
    if (!isInSharedFolder(name) && !hasUnwritten(name)) return false;
    const auto now = read(name);
    const bool isSame = now && seen ? *now.value() == *seen : !now && !seen;
    if (!isSame)
        return Failure{inQuotes(stemOf(name)) + " has been changed by another program meanwhile; "
                                                "look at it again and try again"};
    return removeLocked(name);
}

Result<bool> BankFolder::removeLocked(const std::string& name) {
    const std::error_code error = file_calls::remove(shared(name));
    const bool isMissing = error == std::errc::no_such_file_or_directory;
    if (error && !isMissing) return failure(shared(name), "removed", error);
    cache_->forget(shared(name));
    const bool wasUnwritten = hasUnwritten(name);
    keepUnwritten(name, std::nullopt);
    return !isMissing || wasUnwritten;
}

} // namespace zephyra
