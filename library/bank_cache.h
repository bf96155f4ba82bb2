// BankCache: parsed banks, kept as long as their files do not change.
#pragma once

#include "library/bank_file.h"

#include <cstddef>
#include <filesystem>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// What tables and searches need of a bank.
struct BankSummary {
    struct Snapshot {
        std::string key;
        std::string tag;       ///< "<unnamed>" without one
        std::string foldedTag; ///< see foldCase
        bool hasTag = false;
    };
    std::vector<Snapshot> snapshots; ///< in sortedKeys order
};

/// Summaries of every bank that was looked at, and the contents of the few used last. A file counts
/// as unchanged while inode, size and time are. MAIN or WORKER; a lock that is not held while a
/// file is read guards what is kept.
class BankCache {
public:
    using Content = BankContent;

    /// Failures as for readBank; what a file's bytes are to blame for is remembered like contents.
    Result<Content> read(const std::filesystem::path& path);
    Result<std::shared_ptr<const BankSummary>> summary(const std::filesystem::path& path);
    /// What read() would answer, as far as no file has to be read for it; else nothing.
    std::optional<Result<Content>> known(const std::filesystem::path& path);

    /// Of content, when that is what is kept of path; else null.
    std::shared_ptr<const BankSummary> summaryOf(const std::filesystem::path& path,
                                                 const Content& content) const;

    /// Whether the file that was looked at last under this path is there and can be no bank: no
    /// property list, too large, a folder. False for one that could not be read for other reasons.
    bool isBroken(const std::filesystem::path& path) const;
    /// What was read or written there last, as far as it is kept; null for none.
    Content lastContent(const std::filesystem::path& path) const;

    /// What was just written there.
    void remember(const std::filesystem::path& path, Content content);
    void forget(const std::filesystem::path& path);

    static constexpr std::size_t kKeptContents = 4;

private:
    struct Entry {
        FileStamp stamp;
        std::shared_ptr<const BankSummary> summary; // null: the file cannot be read
        std::string failure;
        Content content; // null once others were used later
    };
    enum class Wanted { summary, content };
    Result<Entry> entry(const std::filesystem::path& path, Wanted wanted);
    std::optional<Entry> kept(const std::filesystem::path& path, Wanted wanted) const;
    Result<Entry> readEntry(const std::filesystem::path& path, Wanted wanted);
    Failure failed(const std::filesystem::path& path, const std::string& message);
    void keep(const std::filesystem::path& path, Entry entry);
    void keepContent(const std::filesystem::path& path);

    mutable std::mutex mutex_; // guards what follows; a leaf
    std::map<std::filesystem::path, Entry> entries_;
    std::list<std::filesystem::path> used_; // with content, latest first
};

/// MAIN or WORKER.
BankSummary summarize(const Bank& bank);

} // namespace zephyra
