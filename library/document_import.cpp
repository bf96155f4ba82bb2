#include "library/document_import.h"

#include "library/bank_folder.h"
#include "platform/files/file_calls.h"
#include "platform/files/file_lock.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/files/whole_file.h"
#include "platform/text/message_text.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr const char* kInvalidName = "Invalid file name";

} // namespace

DocumentImport::DocumentImport(Instance& instance, Kind kind, std::function<void()> refill)
    : instance_(instance), kind_(std::move(kind)), refill_(std::move(refill)),
      worker_(instance.runLoop, instance.log) {}

DocumentImport::~DocumentImport() = default;

void DocumentImport::warn(const std::string& message) {
    instance_.alerts.present({.title = "Warning", .message = message, .actions = {{"Ok"}}});
}

void DocumentImport::importDocument(const fs::path& document) {
    const std::string given = document.filename().string(), name = percentDecoded(given);
    const std::string_view extension = extensionOf(given);
    if (std::ranges::find(kind_.extensions, extension) == kind_.extensions.end())
        return warn(kind_.refusal);
    if (!isFileName(name) || extensionOf(name) != extension) return warn(kInvalidName);
    add({document, name});
}

void DocumentImport::importAs(const fs::path& document, const std::string& typed) {
    const std::string_view stem = trimmed(typed);
    const std::string name =
        std::string(stem) + "." + std::string(extensionOf(document.filename().string()));
    if (stem.empty() || !isFileName(name)) return warn(kInvalidName);
    add({document, name, Copy::Taken::replace});
}

void DocumentImport::add(Copy copy) {
    waiting_.push_back(std::move(copy));
    startNext();
}

void DocumentImport::startNext() {
    if (worker_.busy() || waiting_.empty()) return;
    worker_.start([this, copy = std::move(waiting_.front()),
                   folder = instance_.folders.shared](const Worker::Cancelled&) {
        return RunLoop::Task(
            [this, copy, outcome = perform(copy, folder)] { finish(copy, outcome); });
    });
    waiting_.pop_front();
}

Result<DocumentImport::Outcome> DocumentImport::perform(const Copy& copy, const fs::path& folder) {
    const auto document = readWholeFile(copy.document, kMostBytes);
    if (!document) return Failure{document.message()};
    if (const std::error_code error = file_calls::makeFolders(folder))
        return Failure{onOneLine(copy.document.string()) + " cannot be imported: the folder " +
                       folder.string() + " cannot be made: " + error.message()};
    const fs::path target = folder / copy.name;
    if (copy.taken == Copy::Taken::ask) {
        const Result<bool> created = createFile(target, document.value().bytes);
        if (!created) return Failure{created.message()};
        return created.value() ? Outcome::copied : Outcome::nameTaken;
    }
    FileLock lock; // or a preset that somebody saves just now would bring the old bank back
    if (const std::error_code error = lock.lock(folder / BankFolder::kLockName))
        return Failure{target.string() + " cannot be written: " + error.message()};
    if (const auto replaced = replaceFile(target, document.value().bytes); !replaced)
        return Failure{replaced.message()};
    return Outcome::copied;
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
