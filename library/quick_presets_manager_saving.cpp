// Reading and writing of banks, new banks, and saving presets into them.

#include "library/bank_edits.h"
#include "library/bank_name.h"
#include "library/preset_dialogs.h"
#include "library/preset_edits.h"
#include "library/quick_presets_manager.h"
#include "platform/clock.h"
#include "platform/files/file_name.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kExisting = "Existing file name";
constexpr const char* kNoBank = "Warning, cannot write 'nil' file to disk!";

} // namespace

// --- banks ---

void QuickPresetsManager::readBankFromDisk() {
    stopReading(); // of another bank
    const std::string* const selected = selectedBank();
    const std::string name = selected ? *selected : std::string();
    if (banks_.locate(name).empty() && !banks_.isInMemory(name)) {
        instance_.log.write("Warning, no file exist at path: " +
                            shownFile(getResourcesFolder() / bankFileName(name)) + "!");
        return;
    }
    tools_.saveEnabled = true;
    if (!instance_.runLoop.isPaced()) return takeContent(name, banks_.read(name));
    if (const auto known = banks_.known(name)) return takeContent(name, *known);
    reader_.start([this, name](const Worker::Cancelled&) -> RunLoop::Task {
        return [this, name, content = banks_.fetch(name)] {
            const auto known = banks_.known(name);
            const bool isOlder = content && !known; // others write it, and may never stop
            takeContent(name, known.value_or(content));
            fillTableWithSnapshotsName();
            runTurns();
            if (isOlder && selectedBank() && *selectedBank() == name) readBankFromDisk();
        };
    });
}

void QuickPresetsManager::takeContent(const std::string& name, const Result<BankContent>& content) {
    setContent(name, content ? content.value() : nullptr);
    if (content)
        shownProblem_.clear();
    else
        showProblemOfBank(name, content.message());
}

void QuickPresetsManager::setContent(const std::string& name, BankContent content) {
    contentName_ = name;
    _currentBank.swap(content);
    if (content && content != _currentBank) changes_->letGo(std::move(content));
}

void QuickPresetsManager::showProblemOfBank(const std::string& name, const std::string& problem) {
    if (const std::string shown = name + '\0' + problem; shown != shownProblem_) {
        shownProblem_ = shown;
        report(problem);
    }
}

void QuickPresetsManager::writeBankToDisk() {
    const std::string* const name = selectedBank();
    if (!name) return instance_.log.write(kNoBank);
    // As it stands on disk by then: every change of ours is there already, or waits.
    changeBank(*name, [](Bank&) { return true; });
}

/// For a change that is asked for now, which may wait behind others.
SeenBank QuickPresetsManager::seen(BankContent content) {
    if (!own_ || !changes_->isBusy()) own_ = std::make_shared<OwnEdits>();
    return {std::move(content), own_};
}

void QuickPresetsManager::changeBank(const std::string& name, BankFolder::Change change, Done done,
                                     BankFolder::Unreadable unreadable) {
    if (getAppGroupsFolder().empty()) return report("There is no shared folder for banks; set one");
    if (!isBankName(name)) return report(kInvalidName);
    std::function<void()> meanwhile; // shows what waits for another program
    if (instance_.runLoop.isPaced()) meanwhile = [this] { refillOnNextTurn(); };
    const auto fallback = name == contentName_ ? _currentBank : nullptr;
    changes_->add(name, [this, change = std::move(change), done = std::move(done), unreadable,
                         fallback, meanwhile](BankFolder& banks, const std::string& bank) {
        const bool wasThere = banks.isInSharedFolder(bank);
        auto changed = banks.changeAndShow(bank, change, fallback, unreadable, meanwhile);
        if (changed.problem.empty() && !changed.refused) // what stood in the way may be gone
            std::ranges::move(banks.retryAll(), std::back_inserter(changed.dropped));
        const bool isNew = !wasThere && banks.isInSharedFolder(bank);
        const bool asks = changed.refused && unreadable == BankFolder::Unreadable::refuse;
        return RunLoop::Task(
            [this, bank, again = asks ? change : BankFolder::Change(), done, isNew, changed] {
                for (const std::string& line : changed.dropped) report(line);
                if (!changed.refused)
                    finishChange(bank, changed, done);
                else if (again)
                    offerReplacement(bank, changed.problem, again, done);
                else
                    report(changed.problem);
                if (isNew) tellOtherInstances();
            });
    });
}

void QuickPresetsManager::finishChange(const std::string& name, const BankFolder::Changed& changed,
                                       const Done& done) {
    if (!changed.problem.empty()) report(changed.problem);
    if (name == contentName_ || name == getCurrentSelectedBankName())
        setContent(name, changed.content);
    if (done) done(changed);
}

void QuickPresetsManager::offerReplacement(const std::string& name, const std::string& problem,
                                           BankFolder::Change change, Done done) {
    // A file that broke while its presets are still known here gets them back.
    const auto known = name == contentName_ ? _currentBank : nullptr;
    BankFolder::Change anew = [known, change = std::move(change)](Bank& bank) {
        if (known && bank.empty()) bank = *known;
        return change(bank);
    };
    instance_.log.write(problem);
    present(
        replaceBankDialog(problem, [this, name, anew = std::move(anew), done = std::move(done)] {
            changeBank(name, anew, done, BankFolder::Unreadable::moveAside);
        }));
}

void QuickPresetsManager::addBank(const void*) {
    const DateAndTime now = currentDateAndTime(instance_.clock);
    const std::string name =
        "User " + snapshotKey(_listOfBank.size(), now) + "." + std::string(kBankExtension);
    if (banks_.isInSharedFolder(name) || banks_.isInMemory(name))
        return instance_.log.write(kExisting);
    const auto select = [this, name] {
        choose(_currentBankNameSelected, name);
        refill();
    };
    if (instance_.runLoop.isPaced()) { // at once: a preset may be saved into it in the next moment
        banks_.announce(name);
        select();
    }
    const auto finish = [this, name, select](const Result<bool>& created) {
        if (!created)
            return changeBank(
                name, [](Bank&) { return true; }, [select](const auto&) { select(); });
        if (!created.value()) return instance_.log.write(kExisting);
        if (instance_.runLoop.isPaced())
            refill();
        else
            select();
        tellOtherInstances();
    };
    changes_->add(name, [finish](BankFolder& banks, const std::string& bank) {
        return RunLoop::Task([finish, created = banks.create(bank)] { finish(created); });
    });
}

// --- saving ---

void QuickPresetsManager::collectSnapshotInformation(PropertyDictionary& record) {
    if (!dataSource) return;
    for (auto& [key, value] : dataSource->getState())
        record.insert_or_assign(key, std::move(value));
}

void QuickPresetsManager::saveSnap() {
    const std::string* const bank = selectedBank();
    if (!bank) return instance_.log.write(kNoBank);
    saveInto(*bank, {});
}

/// With that name, unless it cannot be one or is taken. bank becomes the selected one, unless the
/// user chooses another before it is saved.
void QuickPresetsManager::saveInto(const std::string& bank, const std::string& typed) {
    if (!dataSource) return;
    dataSource->prepareState([this, alive = std::weak_ptr(alive_), bank, typed, before = choices_] {
        if (!alive.expired()) savePrepared(bank, typed, before);
    });
}

/// choices: how often somebody had chosen something when it was asked for.
void QuickPresetsManager::savePrepared(const std::string& bank, const std::string& typed,
                                       std::uint64_t choices) {
    PropertyDictionary record;
    collectSnapshotInformation(record);
    const auto key = std::make_shared<std::string>();
    const auto save = [key, record = std::move(record), typed, isName = isFileName(typed),
                       now = currentDateAndTime(instance_.clock)](Bank& into) {
        // Run again, it keeps its key, but not at the cost of somebody else's preset.
        if (key->empty() || into.contains(*key)) *key = freeSnapshotKey(into, now);
        const bool isFree = isName && !hasSnapshotNamed(into, typed);
        PropertyDictionary saved = record;
        saved.insert_or_assign(kSnapshotTags, isFree ? typed : kUnnamed);
        into.insert_or_assign(*key, std::move(saved));
        return true;
    };
    changeBank(bank, save, [this, bank, typed, key, choices](const auto& changed) {
        if (choices == choices_) {
            _currentBankNameSelected = bank;
            if (changed.applied) _currentSnapNameSelected = *key;
        }
        refill();
        if (!changed.applied || typed.empty()) return;
        if (!isFileName(typed)) return present(warning(kInvalidName));
        if (snapshotTag(*changed.content, *key) != typed) instance_.log.write(kExisting);
    });
}

void QuickPresetsManager::saveSnapAs() {
    post([this] {
        inTurn([this] {
            if (!selectedBank()) addBank();
            presentSaveDialog();
        });
    });
}

// The dialogs remember bank and preset: MIDI may select others while they wait.
void QuickPresetsManager::presentSaveDialog() {
    const std::string bank = getCurrentSelectedBankName();
    const auto save = [this, bank](const std::string& typed) {
        if (bank == kNone) return instance_.log.write(kNoBank);
        saveInto(bank, typed);
    };
    std::function<void()> overwriteKey;
    if (const auto preset = selectedPreset())
        overwriteKey = [this, preset = *preset] { presentOverwriteDialog(preset); };
    present(savePresetDialog(
        bank, save, [this](const std::string& typed) { presentSelectBankDialog(typed); },
        overwriteKey));
}

void QuickPresetsManager::presentSelectBankDialog(const std::string& typed) {
    // By name, since rows may be others by the time of the answer.
    present(selectBankDialog(typed, _listOfBank, [this, typed](const std::string& bank) {
        setCurrentSelectedBankName(bank);
        refill();
        saveInto(bank, typed);
    }));
}

// --- overwriting ---

void QuickPresetsManager::overwriteSnapshot(const void*) {
    if (const auto preset = selectedPreset()) presentOverwriteDialog(*preset);
}

void QuickPresetsManager::presentOverwriteDialog(const SeenPreset& preset) {
    present(overwriteDialog(snapshotTag(*preset.content, preset.key).value_or(kUnnamed),
                            [this, preset] { overwrite(preset); }));
}

void QuickPresetsManager::performSnapOverwrite() {
    if (const auto preset = selectedPreset()) overwrite(*preset);
}

void QuickPresetsManager::overwrite(const SeenPreset& preset) {
    if (!dataSource) return;
    dataSource->prepareState([this, alive = std::weak_ptr(alive_), preset] {
        if (alive.expired()) return;
        PropertyDictionary state;
        collectSnapshotInformation(state);
        state.erase(kSnapshotTags); // the preset keeps its name
        changeBank(preset.bank,
                   overwritingPreset(seen(preset.content), preset.key, std::move(state)),
                   [this](const auto&) { refill(); });
    });
}

} // namespace zephyra
