// Reading and writing of banks, new banks, and saving presets into them.

#include "library/bank_edits.h"
#include "library/preset_dialogs.h"
#include "library/quick_presets_manager.h"
#include "platform/clock.h"
#include "platform/files/file_name.h"
#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kNoBank = "Warning, cannot write 'nil' file to disk!";

} // namespace

// --- banks ---

void QuickPresetsManager::readBankFromDisk() {
    const std::string* const selected = selectedBank();
    const std::string name = selected ? *selected : std::string();
    if (banks_.locate(name).empty() && !banks_.hasUnwritten(name)) {
        instance_.log.write("Warning, no file exist at path: " +
                            shownFile(getResourcesFolder() / bankFileName(name)) + "!");
        return;
    }
    const auto content = banks_.read(name);
    tools_.saveEnabled = true;
    contentName_ = name;
    _currentBank = content ? content.value() : nullptr;
    if (content)
        shownProblem_.clear();
    else
        showProblemOfBank(name, content.message());
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
    // What other programs added meanwhile stays.
    changeBank(*name, [mine = selectedContent()](Bank& bank) {
        if (mine)
            for (const auto& [key, record] : *mine) bank.insert_or_assign(key, record);
        return true;
    });
}

void QuickPresetsManager::changeBank(const std::string& name, BankFolder::Change change, Done done,
                                     BankFolder::Unreadable unreadable) {
    if (getAppGroupsFolder().empty()) return report("There is no shared folder for banks; set one");
    if (!isBankName(name)) return report("Invalid file name");
    const bool wasThere = banks_.isInSharedFolder(name);
    const auto changed =
        banks_.change(name, change, name == contentName_ ? _currentBank : nullptr, unreadable);
    if (changed.refused) {
        if (unreadable == BankFolder::Unreadable::moveAside) return report(changed.problem);
        return offerReplacement(name, changed.problem, std::move(change), std::move(done));
    }
    if (changed.problem.empty())
        banks_.retryAll(); // what stood in the way of other banks may be gone as well
    else
        report(changed.problem);
    if (name == contentName_ || name == getCurrentSelectedBankName()) {
        _currentBank = changed.content;
        contentName_ = name;
    }
    if (done) done(changed.applied);
    if (!wasThere && banks_.isInSharedFolder(name)) tellOtherInstances();
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
    const auto select = [this, name](bool) {
        _currentBankNameSelected = name;
        refill();
    };
    const auto created = banks_.create(name);
    if (!created)
        return changeBank(
            name, [](Bank&) { return true; }, select); // kept in memory
    if (!created.value()) return instance_.log.write("Existing file name");
    select(true);
    tellOtherInstances();
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

/// With that name, unless it cannot be one or is taken. bank becomes the selected one.
void QuickPresetsManager::saveInto(const std::string& bank, const std::string& typed) {
    if (!dataSource) return;
    PropertyDictionary record;
    collectSnapshotInformation(record);
    record.insert_or_assign(kSnapshotTags, kUnnamed);

    const auto key = std::make_shared<std::string>();
    const auto save = [key, record = std::move(record),
                       now = currentDateAndTime(instance_.clock)](Bank& into) {
        // Run again, it keeps its key, but not at the cost of somebody else's preset.
        if (key->empty() || into.contains(*key)) *key = snapshotKey(into.size(), now);
        into.insert_or_assign(*key, record);
        return true;
    };
    changeBank(bank, save, [this, bank, typed, key](bool applied) {
        _currentBankNameSelected = bank;
        if (applied) _currentSnapNameSelected = *key;
        refill();
        if (applied && !typed.empty()) renameCurrentSnapshot(typed);
    });
}

void QuickPresetsManager::saveSnapAs() {
    post([this] {
        if (!selectedBank()) addBank();
        presentSaveDialog();
    });
}

// The dialogs remember bank and preset: MIDI may select others while they wait.
void QuickPresetsManager::presentSaveDialog() {
    const std::string bank = getCurrentSelectedBankName();
    const std::string key = getCurrentSelectedSnapID();
    const auto save = [this, bank](const std::string& typed) {
        if (bank == kNone) return instance_.log.write(kNoBank);
        saveInto(bank, typed);
    };
    std::function<void()> overwriteKey;
    if (selectedRecord()) overwriteKey = [this, bank, key] { presentOverwriteDialog(bank, key); };
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
    if (selectedRecord())
        presentOverwriteDialog(getCurrentSelectedBankName(), getCurrentSelectedSnapID());
}

void QuickPresetsManager::presentOverwriteDialog(const std::string& bank, const std::string& key) {
    const auto content = banks_.read(bank);
    if (!content || !recordOf(*content.value(), key)) return;
    present(overwriteDialog(snapshotTag(*content.value(), key).value_or(kUnnamed),
                            [this, bank, key] { overwrite(bank, key); }));
}

void QuickPresetsManager::performSnapOverwrite() {
    if (selectedRecord()) overwrite(getCurrentSelectedBankName(), getCurrentSelectedSnapID());
}

void QuickPresetsManager::overwrite(const std::string& bank, const std::string& key) {
    if (!dataSource) return;
    PropertyDictionary state;
    collectSnapshotInformation(state);
    state.erase(kSnapshotTags); // the preset keeps its name
    const auto replace = [key, state = std::move(state)](Bank& into) {
        PropertyDictionary* const record = recordOf(into, key);
        if (!record) return false;
        for (const auto& [name, value] : state) record->insert_or_assign(name, value);
        return true;
    };
    changeBank(bank, replace, [this](bool) { refill(); });
}

} // namespace zephyra
