// DocumentImport: copies documents that the user picked into the shared folder.
#pragma once

#include "platform/files/file_copy.h"
#include "platform/instance.h"
#include "platform/text/result.h"
#include "platform/threads/worker.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

/// Documents of any length are copied on WORKER, one after another, and completely or not at all,
/// the latter also where this ends meanwhile; nothing is written outside the shared folder. A name
/// that is taken is asked for anew. What fails becomes an alert that names the document. MAIN.
class DocumentImport {
public:
    struct Kind {
        std::vector<std::string> extensions; ///< without dot; others are refused
        std::string refusal;                 ///< the message of that warning
    };
    /// refill runs on MAIN when the folder holds something new. instance must outlive this.
    DocumentImport(Instance& instance, Kind kind, std::function<void()> refill);
    ~DocumentImport();

    /// Told on WORKER the share of the document at hand that is copied, 0 to 1, also while it waits
    /// for the shared folder's lock; false ends its import. While nothing is imported.
    void setProgress(FileCopy::Progress progress) { progress_ = std::move(progress); }

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
                                   const FileCopy::Progress& progress);

    void startNext();
    void finish(const Copy& copy, const Result<Outcome>& outcome);
    void askForName(const Copy& copy);
    void warn(const std::string& message);

    Instance& instance_;
    Kind kind_;
    std::function<void()> refill_;
    FileCopy::Progress progress_;
    std::deque<Copy> waiting_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true); // an alert may outlive this
    Worker worker_;
};

} // namespace zephyra
