// DocumentImport: copies documents that the user picked into the shared folder.
#pragma once

#include "platform/files/file_lock.h"
#include "platform/instance.h"
#include "platform/text/result.h"
#include "platform/threads/worker.h"

#include <cstddef>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// Documents are read on WORKER, one after another, and written completely or not at all; nothing
/// is written outside the shared folder. A name that is taken is asked for anew. What fails becomes
/// an alert that names the document. MAIN.
class DocumentImport {
public:
    struct Kind {
        std::vector<std::string> extensions; ///< without dot; others are refused
        std::string refusal;                 ///< the message of that warning
    };
    static constexpr std::size_t kMostBytes = std::size_t{1} << 30; ///< of a document

    /// refill runs on MAIN when the folder holds something new. instance must outlive this.
    DocumentImport(Instance& instance, Kind kind, std::function<void()> refill);
    ~DocumentImport();

    /// For the lock of the shared folder; goesOn is asked on WORKER. While nothing is imported.
    void setLockWait(LockWait wait) { wait_ = std::move(wait); }

    /// The copy's name is the document's with its percent escapes decoded.
    void importDocument(const std::filesystem::path& document);
    /// The copy is called as typed, with the document's extension; what has that name is replaced.
    void importAs(const std::filesystem::path& document, const std::string& typed);

    /// Whether the document's extension is one of the kind's.
    bool takes(const std::filesystem::path& document) const;
    /// What those two call the copy; a failure is the warning that tells why it cannot be.
    Result<std::string> nameOf(const std::filesystem::path& document) const;
    Result<std::string> nameAs(const std::filesystem::path& document,
                               const std::string& typed) const;

    enum class IfTaken { ask, replace };
    /// The copy gets that name, which must be an answer of nameOf or nameAs.
    void copyDocument(const std::filesystem::path& document, const std::string& name,
                      IfTaken ifTaken);

    /// Whether one is still being read or written; one that waits for a name is not.
    bool isImporting() const { return worker_.busy() || !waiting_.empty(); }

private:
    /// A document on its way to a name in the shared folder.
    struct Copy {
        std::filesystem::path document;
        std::string name;
        IfTaken ifTaken = IfTaken::ask;
    };
    enum class Outcome { copied, nameTaken };
    Result<std::string> checkedName(const std::filesystem::path& document, std::string name) const;
    static Result<Outcome> perform(const Copy& copy, const std::filesystem::path& folder,
                                   const LockWait& wait);

    void startNext();
    void finish(const Copy& copy, const Result<Outcome>& outcome);
    void askForName(const Copy& copy);
    void warn(const std::string& message);

    Instance& instance_;
    Kind kind_;
    std::function<void()> refill_;
    LockWait wait_;
    std::deque<Copy> waiting_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // an alert may outlive this
    Worker worker_;
};

} // namespace zephyra
