// BankFolder: the banks of the shared folder and of the factory, as files that several programs
// use.
#pragma once

#include "library/bank_cache.h"
#include "library/bank_change.h"
#include "library/bank_name.h"
#include "library/unwritten_changes.h"
#include "platform/files/file_lock.h"
#include "platform/files/folders.h"
#include "platform/text/result.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

/// A bank by its name (bank_name.h): the file name with extension, as text.
struct ListedBank {
    std::string name;
    std::string marker = {}; ///< kFactoryMarker for one that stands in the resource folder only
    bool isFactory() const { return !marker.empty(); }
    bool operator==(const ListedBank&) const = default;
};
inline constexpr const char* kFactoryMarker = "***";

/// Nothing is ever written outside the shared folder: names that are not a bank's (bank_name.h) are
/// refused. Every change takes the folder's lock, starts from what stands on disk by then, and
/// replaces the file; so programs that change one bank at the same time lose nothing. MAIN or
/// WORKER: one thread at a time changes banks and reads those with changes that are unwritten; any
/// other may read, and look for what is known, meanwhile.
class BankFolder {
public:
    /// folders must outlive this. cache may be shared with others.
    explicit BankFolder(const Folders& folders,
                        std::shared_ptr<BankCache> cache = std::make_shared<BankCache>());

    /// What others have read already takes the place of what this one has read. Never null. While
    /// no other thread uses this.
    void setCache(std::shared_ptr<BankCache> cache) { cache_ = std::move(cache); }
    /// For the folder's lock. Whoever ends the wait, by goesOn, leaves the bank as it is; a lock
    /// that is not free in time is a failed write. While no other thread uses this.
    void setLockWait(LockWait wait) { wait_ = std::move(wait); }
    const LockWait& lockWait() const { return wait_; }

    const Folders& folders() const { return folders_; }

    /// Both folders' banks, sorted by bytes; a user's bank, also one that could not be written yet,
    /// hides the factory's of the same name.
    std::vector<ListedBank> list() const;

    /// Where the bank stands: in the shared folder, else in the resource folder; empty for neither.
    std::filesystem::path locate(const std::string& name) const;
    bool isInSharedFolder(const std::string& name) const;

    /// With the changes that could not be written yet. Fails with one line that names the file.
    Result<BankCache::Content> read(const std::string& name);
    /// The same as far as no file has to be read for it, else nothing; with a change, too, that
    /// waits for the lock.
    std::optional<Result<BankCache::Content>> known(const std::string& name);
    /// Of what known() or read() answered, unless that would take long: then null.
    std::shared_ptr<const BankSummary> summaryOf(const std::string& name,
                                                 const BankCache::Content& content) const;
    /// Reads the file, so that known() knows it; for whom changes are made meanwhile elsewhere.
    Result<BankCache::Content> fetch(const std::string& name);
    /// Of what read() answered last, where changes are unwritten.
    Result<std::shared_ptr<const BankSummary>> summary(const std::string& name);

    using Change = BankChange;

    enum class Unreadable {
        refuse,    ///< a bank that cannot be read stays as it is
        moveAside, ///< it is kept under another name, and an empty bank takes its place
    };

    struct Changed {
        BankCache::Content content; ///< as it is now, in memory at least; null when refused
        std::string problem = {};   ///< one line when it does not stand on disk; else empty
        bool refused = false;       ///< the bank cannot be read, nothing was changed
        bool applied = false;       ///< whether content has the change
        std::vector<std::string> dropped = {}; ///< why earlier unwritten changes are given up
    };

    /// Runs change on the bank as it stands on disk now and writes it into the shared folder. A
    /// missing one begins as fallback, null: as the factory bank of its name, or empty. What cannot
    /// be written stays in memory, is shown by read() and goes along with the next change; only
    /// what no file could ever hold, and what the change itself refuses by then, is dropped.
    Changed change(const std::string& name, Change change, BankCache::Content fallback = nullptr,
                   Unreadable unreadable = Unreadable::refuse);
    /// The same; while it waits for the lock, known() shows the bank with the change, and
    /// meanwhile is called once, when that begins.
    Changed changeAndShow(const std::string& name, Change change, BankCache::Content fallback,
                          Unreadable unreadable, const std::function<void()>& meanwhile);

    /// Tries again to write what could not be written; nothing happens when there is nothing.
    Changed retry(const std::string& name);

    /// known() and list() have an empty bank of that name until create() is done with it.
    void announce(const std::string& name);
    /// A bank with that content, whole or not at all. False when the shared folder has one of that
    /// name.
    Result<bool> create(const std::string& name, const Bank& content = {});
    /// Only within the shared folder; false, and nothing changed, when `from` is not there or `to`
    /// is. A failure is the system's, as one line.
    Result<bool> rename(const std::string& from, const std::string& to);
    /// Of the shared folder only; false when it has none of that name.
    Result<bool> remove(const std::string& name);
    /// The same of a bank that was seen (null: as one that cannot be read); fails where it is
    /// another by then.
    Result<bool> remove(const std::string& name, const BankCache::Content& seen);

    /// Whether a change of that bank is still to be written.
    bool hasUnwritten(const std::string& name) const { return unwrittenOf(name).has_value(); }
    /// Whether known() has it from memory alone.
    bool isInMemory(const std::string& name) const;
    /// retry() for every bank that has such changes. Answers what Changed::dropped does.
    std::vector<std::string> retryAll();

    /// The side file whose lock every change holds; hidden, in the shared folder.
    static constexpr const char* kLockName = ".zephyra.lock";

private:
    struct Start {
        BankCache::Content content;
        std::filesystem::path broken; // the file that can be no bank; empty for none
        std::string problem;          // why content is not what stands on disk
    };
    Start startOf(const std::string& name, const BankCache::Content& fallback);
    void showWith(const std::string& name, const Change& change,
                  const BankCache::Content& fallback);
    Changed changeLocked(const std::string& name, Change change, const BankCache::Content& fallback,
                         Unreadable unreadable, std::error_code locking);
    Changed finish(const std::string& name, UnwrittenChanges known, Change change,
                   std::string problem);
    std::string settle(const std::string& name, UnwrittenChanges next, std::string problem);
    std::error_code take(FileLock& lock, const std::function<void()>& meanwhile = {}) const;
    Failure lockFailure(const std::string& name, const char* what, std::error_code error) const;
    Result<void> moveAside(const std::filesystem::path& path);
    Result<bool> removeLocked(const std::string& name);
    std::filesystem::path shared(const std::string& name) const {
        return folders_.shared / bankFileName(name);
    }
    std::optional<UnwrittenChanges> unwrittenOf(const std::string& name) const;
    void keepUnwritten(const std::string& name, std::optional<UnwrittenChanges> changes);

    const Folders& folders_;
    std::shared_ptr<BankCache> cache_;
    LockWait wait_;
    mutable std::mutex mutex_; // guards what follows; a leaf
    std::map<std::string, UnwrittenChanges> unwritten_;
    struct Meanwhile {
        BankCache::Content content;
        std::shared_ptr<const BankSummary> summary;
    };
    std::map<std::string, Meanwhile> meanwhile_; // banks whose change waits for the lock
};

} // namespace zephyra
