#include "library/document_import.h"

#include "library/bank_folder.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_lock.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

DocumentImport::DocumentImport(Instance& instance, Kind kind, std::function<void()> refill)
    : instance_(instance), kind_(std::move(kind)), refill_(std::move(refill)),
      worker_(instance.runLoop, instance.log) {}

DocumentImport::~DocumentImport() = default;

void DocumentImport::warn(const std::string& message) {
    instance_.alerts.present({.title = "Warning", .message = message, .actions = {{"Ok"}}});
}

bool DocumentImport::takes(const fs::path& document) const {
    return std::ranges::count(kind_.extensions, extensionOf(document.filename().string())) > 0;
}

/// A copy keeps the document's extension.
Result<std::string> DocumentImport::checkedName(const fs::path& document, std::string name) const {
    if (!takes(document)) return Failure{kind_.refusal};
    const bool keeps = extensionOf(name) == extensionOf(document.filename().string());
    return keeps && isFileNameWithoutExtension(name) ? Result(std::move(name))
                                                     : Failure{kInvalidName};
}

Result<std::string> DocumentImport::nameOf(const fs::path& document) const {
    return checkedName(document, percentDecoded(document.filename().string()));
}

Result<std::string> DocumentImport::nameAs(const fs::path& document,
                                           const std::string& typed) const {
    std::string name(trimmed(typed));
    return checkedName(document,
                       name.append(".").append(extensionOf(document.filename().string())));
}

void DocumentImport::importDocument(const fs::path& document) {
    const auto name = nameOf(document);
    if (!name) return warn(name.message());
    copyDocument(document, name.value(), IfTaken::ask);
}

void DocumentImport::importAs(const fs::path& document, const std::string& typed) {
    const auto name = nameAs(document, typed);
    if (!name) return warn(name.message());
    copyDocument(document, name.value(), IfTaken::replace);
}

void DocumentImport::copyDocument(const fs::path& document, const std::string& name,
                                  IfTaken ifTaken) {
    waiting_.push_back({document, name, ifTaken});
    startNext();
}

void DocumentImport::startNext() {
    if (worker_.busy() || waiting_.empty()) return;
    worker_.start([this, copy = std::move(waiting_.front()), folder = instance_.folders.shared,
                   progress = progress_](const Worker::Cancelled& cancelled) {
        const auto goesOn = [&](double share) {
            return !cancelled && (!progress || progress(share));
        };
        return RunLoop::Task(
            [this, copy, outcome = perform(copy, folder, goesOn)] { finish(copy, outcome); });
    });
    waiting_.pop_front();
}

Result<DocumentImport::Outcome> DocumentImport::perform(const Copy& copy, const fs::path& folder,
                                                        const FileCopy::Progress& progress) {
    FileCopy file;
    if (const auto opened = file.open(copy.document); !opened) return Failure{opened.message()};
    if (const std::error_code error = file_calls::makeFolders(folder))
        return Failure{shownFile(copy.document) + " cannot be imported: the folder " +
                       shownFile(folder) + " cannot be made: " + error.message()};
    const fs::path target = folder / copy.name;
    const bool asks = copy.ifTaken == IfTaken::ask;
    const auto isTaken = [&] {
        std::error_code missing;
        return asks && fs::exists(file_calls::status(target, missing));
    };
    const bool wasTaken = isTaken(); // then a long copy would be made for nothing
    if (!wasTaken)
        if (const auto written = file.write(target, progress); !written)
            return Failure{written.message()};
    FileLock lock; // or who changes a bank just now would write over what arrives
    const fs::path side = folder / BankFolder::kLockName;
    if (const std::error_code error = lock.lock(side, {.goesOn = [&] { return progress(1.0); }}))
        return Failure{shownFile(target) + " cannot be written: " + lockProblem(side, error)};
    if (isTaken()) return Outcome::nameTaken;
    if (wasTaken)
        if (const auto written = file.write(target, progress); !written)
            return Failure{written.message()};
    const Result<bool> named = asks ? file.create() : file.replace();
    if (!named) return Failure{named.message()};
    return named.value() ? Outcome::copied : Outcome::nameTaken;
}

void DocumentImport::finish(const Copy& copy, const Result<Outcome>& outcome) {
    startNext();
    if (!outcome) return warn(outcome.message());
    if (outcome.value() == Outcome::nameTaken) return askForName(copy);
    const auto refill = refill_; // may end this
    refill();
}

void DocumentImport::askForName(const Copy& copy) {
    const auto chosen = [this, alive = std::weak_ptr(alive_),
                         document = copy.document](const std::string& text) {
        if (!alive.expired()) importAs(document, text);
    };
    instance_.alerts.present(
        {.title = "This location already contains a file named " + copy.name,
         .message = "Would you like to rename the file you are about to import?",
         .actions = {{"OK", chosen}, {"Cancel"}},
         .textField = AlertTextField{.placeholder = std::string(stemOf(copy.name)), .text = {}}});
}

} // namespace zephyra
