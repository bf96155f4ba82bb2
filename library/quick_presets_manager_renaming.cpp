// Renaming and deleting presets and banks.

#include "library/bank_edits.h"
#include "library/preset_dialogs.h"
#include "library/quick_presets_manager.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"

#include <utility>

namespace zephyra {

namespace {

constexpr const char* kExisting = "Existing file name";
constexpr const char* kInvalid = "Invalid file name";

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
                     isBank ? std::string() : _listOfSnapshots[row]};
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
    setSnapshotName(item.bank, item.key, typed, [this] { present(warning(kExisting, "Close")); });
}

void QuickPresetsManager::renameCurrentSnapshot(const std::string& name) {
    if (selectedRecord())
        setSnapshotName(getCurrentSelectedBankName(), getCurrentSelectedSnapID(), name,
                        [this] { instance_.log.write(kExisting); });
}

void QuickPresetsManager::setSnapshotName(const std::string& bank, const std::string& key,
                                          const std::string& name,
                                          const std::function<void()>& nameIsTaken) {
    if (!isFileName(name)) return present(warning(kInvalid));
    const auto isTaken = std::make_shared<bool>(false);
    const auto setName = [key, name, isTaken](Bank& into) {
        *isTaken = hasSnapshotNamed(into, name);
        PropertyDictionary* const record = recordOf(into, key);
        if (*isTaken || !record) return false;
        record->insert_or_assign(kSnapshotTags, name);
        return true;
    };
    changeBank(bank, setName, [this, isTaken, nameIsTaken](bool applied) {
        if (!applied && *isTaken) nameIsTaken();
        refill();
    });
}

void QuickPresetsManager::renameBank(const std::string& from, const std::string& typed) {
    const std::string to = bankName(typed);
    if (to != from && !isNewBankName(to)) return present(warning(kInvalid));
    const auto moved = banks_.rename(from, to);
    if (moved && !moved.value()) return present(warning(kExisting, "Close"));
    if (!moved) {
        instance_.log.write("Unable to move file: " + moved.message());
        present(warning(moved.message()));
    }
    // After a failed move, too: what is saved next then stands under the wanted name.
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
    changeBank(
        getCurrentSelectedBankName(), [key](Bank& bank) { return bank.erase(key) > 0; },
        [this](bool) { refillOnNextTurn(); });
}

void QuickPresetsManager::deleteBank(const std::string& name) {
    const auto removed = banks_.remove(name);
    if (!removed) report(removed.message());
    _currentBank = nullptr;
    contentName_.clear();
    _currentBankNameSelected.reset();
    _currentSnapNameSelected.reset();
    refillOnNextTurn();
    if (removed && removed.value()) tellOtherInstances();
}

void QuickPresetsManager::deleteAllSnapshots() {
    const auto content = selectedContent();
    if (!content) return;
    const std::string bank = getCurrentSelectedBankName();
    present(deleteAllDialog(bank, [this, bank, content] {
        // Only those that the user knew of.
        const auto empty = [content](Bank& into) {
            std::erase_if(into, [&](const auto& entry) { return content->contains(entry.first); });
            return true;
        };
        changeBank(bank, empty, [this](bool) { refill(); });
    }));
}

} // namespace zephyra
