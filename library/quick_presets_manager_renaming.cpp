// Renaming and deleting presets and banks.

#include "library/bank_edits.h"
#include "library/preset_dialogs.h"
#include "library/preset_edits.h"
#include "library/quick_presets_manager.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kExisting = "Existing file name";

/// What was typed for a bank, with its extension.
std::string bankName(const std::string& typed) {
    return extensionOf(typed) == kBankExtension ? typed : typed + "." + std::string(kBankExtension);
}

} // namespace

// --- renaming ---

void QuickPresetsManager::renameSnapshot(int table, std::size_t row) {
    if (_itemToRename || !tableView_canEditRowAtIndexPath(table, row)) return;
    const bool isBank = table == kBanksTable;
    RenamedItem item{table, isBank ? _listOfBank[row].name : getCurrentSelectedBankName(),
                     isBank ? std::string() : _listOfSnapshots[row], selectedContent()};
    const std::string name =
        isBank ? item.bank : getSnapshotNameFromID(item.key).value_or(kUnnamed);
    _itemToRename = std::move(item);
    present(renameDialog(
        isBank ? "Bank" : "Preset", std::string(stemOf(name)),
        [this](const std::string& typed) { rename(*std::exchange(_itemToRename, {}), typed); },
        [this] { _itemToRename.reset(); }));
}

void QuickPresetsManager::rename(const RenamedItem& item, const std::string& typed) {
    if (typed.empty()) return;
    if (item.table == kBanksTable) return renameBank(item.bank, typed);
    setSnapshotName({item.bank, item.key, item.seen}, typed,
                    [this] { present(warning(kExisting, "Close")); });
}

void QuickPresetsManager::renameCurrentSnapshot(const std::string& name) {
    if (const auto preset = selectedPreset())
        setSnapshotName(*preset, name, [this] { instance_.log.write(kExisting); });
}

void QuickPresetsManager::setSnapshotName(const SeenPreset& preset, const std::string& name,
                                          const std::function<void()>& nameIsTaken) {
    if (!isFileName(name)) return present(warning(kInvalidName));
    changeBank(preset.bank, renamingPreset(seen(preset.content), preset.key, name),
               [this, nameIsTaken](const BankFolder::Changed& changed) {
                   if (!changed.applied && changed.problem.empty()) nameIsTaken();
                   refill();
               });
}

void QuickPresetsManager::renameBank(const std::string& from, const std::string& typed) {
    const std::string to = bankName(typed);
    if (to != from && !isNewBankName(to)) return present(warning(kInvalidName));
    changes_->add(from, [this, to](BankFolder& banks, std::string& bank) {
        const std::string was = bank;
        const auto moved = banks.rename(was, to);
        // After a failed move, too: what is saved next then stands under the wanted name.
        if (!moved || moved.value()) bank = to;
        return RunLoop::Task([this, was, to, moved] { finishRename(was, to, moved); });
    });
}

void QuickPresetsManager::finishRename(const std::string& from, const std::string& to,
                                       const Result<bool>& moved) {
    if (moved && !moved.value()) return present(warning(kExisting, "Close"));
    if (!moved) {
        instance_.log.write("Unable to move file: " + moved.message());
        present(warning(moved.message()));
    }
    if (from == getCurrentSelectedBankName()) {
        _currentBankNameSelected = to;
        if (contentName_ == from) contentName_ = to;
    }
    refill();
    if (moved) tellOtherInstances();
}

// --- deleting ---

void QuickPresetsManager::tableView_commitDeleteForRowAtIndexPath(int table, std::size_t row) {
    if (!tableView_canEditRowAtIndexPath(table, row)) return;
    if (table == kBanksTable)
        deleteBank(_listOfBank[row].name);
    else
        deleteSnapshot(_listOfSnapshots[row]);
}

void QuickPresetsManager::deleteSnapshot(const std::string& key) {
    changeBank(contentName_, deletingPresets(seen(selectedContent()), {key}),
               [this](const auto&) { refillOnNextTurn(); });
}

void QuickPresetsManager::deleteBank(const std::string& name) {
    std::optional<Result<BankContent>> seen; // of others, nothing but the name
    if (name == contentName_ && _currentBank)
        seen = _currentBank;
    else
        seen = banks_.known(name);
    changes_->add(
        name, [this, seen, before = choices_](BankFolder& banks, const std::string& bank) {
            const auto removed =
                !seen ? banks.remove(bank) : banks.remove(bank, *seen ? seen->value() : nullptr);
            return RunLoop::Task([this, removed, before] {
                if (!removed) report(removed.message());
                if (before == choices_) {
                    setContent({}, nullptr);
                    _currentBankNameSelected.reset();
                    _currentSnapNameSelected.reset();
                }
                refillOnNextTurn();
                if (removed && removed.value()) tellOtherInstances();
            });
        });
}

void QuickPresetsManager::deleteAllSnapshots() {
    const auto content = selectedContent();
    if (!content) return;
    const std::string bank = getCurrentSelectedBankName();
    present(deleteAllDialog(bank, [this, bank, content] {
        // Only those that the user knew of.
        changeBank(bank, deletingPresets(seen(content), sortedKeys(*content)),
                   [this](const auto&) { refill(); });
    }));
}

} // namespace zephyra
