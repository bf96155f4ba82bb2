// BankFolder: the banks of the shared folder and of the factory, as files that several programs
// use.
#pragma once

#include "library/bank_cache.h"
#include "library/bank_name.h"
#include "platform/files/folders.h"
#include "platform/text/result.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
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

/// Nothing is ever written outside the shared folder: names that are not a
/// bank's (bank_name.h) are refused. Every change takes the folder's lock, starts from what stands
/// on disk by then, and replaces the file; so programs that change one bank at the same time lose
/// nothing. MAIN.
class BankFolder {
public:
    /// folders must outlive this. cache may be shared with others of the same thread.
    explicit BankFolder(const Folders& folders,
                        std::shared_ptr<BankCache> cache = std::make_shared<BankCache>());

    /// What others have read already takes the place of what this one has read. Never null.
    void setCache(std::shared_ptr<BankCache> cache) { cache_ = std::move(cache); }

    const Folders& folders() const { return folders_; }

    /// Both folders' banks, sorted by bytes; a user's bank, also one that could not be written yet,
    /// hides the factory's of the same name.
    std::vector<ListedBank> list() const;

    /// Where the bank stands: in the shared folder, else in the resource folder; empty for neither.
    std::filesystem::path locate(const std::string& name) const;
    bool isInSharedFolder(const std::string& name) const;

    /// With the changes that could not be written yet. Fails with one line that names the file.
    Result<BankCache::Content> read(const std::string& name);
    Result<std::shared_ptr<const BankSummary>> summary(const std::string& name);

    /// Changes a bank in place; may be run again on another version of it. False: leave it alone.
    using Change = std::function<bool(Bank& bank)>;

    enum class Unreadable {
        refuse,    ///< a bank that cannot be read stays as it is
        moveAside, ///< it is kept under another name, and an empty bank takes its place
    };

    struct Changed {
        BankCache::Content content; ///< as it is now, in memory at least; null when refused
        std::string problem;        ///< one line when it does not stand on disk; else empty
        bool refused = false;       ///< the bank cannot be read, nothing was changed
        bool applied = false;       ///< whether content has the change
    };

    /// Runs change on the bank as it stands on disk now and writes it into the shared folder. A
    /// missing one begins as fallback, null: as the factory bank of its name, or empty. What cannot
    /// be written stays in memory, is shown by read() and goes along with the next change; only
    /// what no file could ever hold is dropped.
    Changed change(const std::string& name, Change change, BankCache::Content fallback = nullptr,
                   Unreadable unreadable = Unreadable::refuse);

    /// Tries again to write what could not be written; nothing happens when there is nothing.
    Changed retry(const std::string& name);

    /// A bank with that content, whole or not at all. False when the shared folder has one of that
    /// name.
    Result<bool> create(const std::string& name, const Bank& content = {});
    /// Only within the shared folder; false, and nothing changed, when `from` is not there or `to`
    /// is. A failure is the system's, as one line.
    Result<bool> rename(const std::string& from, const std::string& to);
    /// Of the shared folder only; false when it has none of that name.
    Result<bool> remove(const std::string& name);

    /// Whether a change of that bank is still to be written.
    bool hasUnwritten(const std::string& name) const { return unwritten_.contains(name); }
    /// retry() for every bank that has such changes.
    void retryAll();

    /// The side file whose lock every change holds; hidden, in the shared folder.
    static constexpr const char* kLockName = ".zephyra.lock";

private:
    struct Unwritten {
        BankCache::Content base; // what the changes were made to, should the file be gone
        std::vector<Change> changes;
        BankCache::Content shown; // base with the changes
        bool isGuess = false;     // base was not read: a file that is there could not be
    };
    struct Start {
        BankCache::Content content;
        std::filesystem::path broken; // the file that can be no bank; empty for none
        std::string problem;          // why content is not what stands on disk
    };
    Start startOf(const std::string& name, const BankCache::Content& fallback);
    static void rebase(Unwritten& unwritten, const BankCache::Content& base);
    Changed finish(const std::string& name, Unwritten known, Change change, std::string problem);
    std::string settle(const std::string& name, Unwritten next, std::string problem);
    Result<void> moveAside(const std::filesystem::path& path);
    std::filesystem::path shared(const std::string& name) const {
        return folders_.shared / bankFileName(name);
    }

    const Folders& folders_;
    std::shared_ptr<BankCache> cache_;
    std::map<std::string, Unwritten> unwritten_;
};

} // namespace zephyra
