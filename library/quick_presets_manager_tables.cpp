// The preset store's two tables: what they list, what is selected in them, and their buttons.

#include "library/bank_edits.h"
#include "library/preset_edits.h"
#include "library/preset_tables.h"
#include "library/quick_presets_manager.h"

#include <algorithm>

namespace zephyra {

namespace {

template <typename List, typename Projection>
std::optional<std::size_t> rowOf(const List& list, const std::string& name, Projection of) {
    const auto found = std::ranges::find(list, name, of);
    if (found == list.end()) return std::nullopt;
    return static_cast<std::size_t>(found - list.begin());
}

} // namespace

// --- lists ---

void QuickPresetsManager::fillTableWithBankName() {
    _listOfBank = banks_.list();
    if (isAscending) std::ranges::reverse(_listOfBank);
    if (!isFiltered) showRows(tables_[kBanksTable], bankRows(_listOfBank));
}

void QuickPresetsManager::fillTableWithSnapshotsName() {
    // Stepping through a large bank must not sort and draw it anew each time.
    if (const auto content = selectedContent(); !content || content != listedContent_.lock()) {
        listed_ = content ? banks_.summaryOf(contentName_, content) : nullptr;
        if (content && !listed_) listed_ = std::make_shared<const BankSummary>(summarize(*content));
        _listOfSnapshots.clear();
        if (listed_)
            for (const auto& snapshot : listed_->snapshots)
                _listOfSnapshots.push_back(snapshot.key);
        listedContent_ = content;
    }
    reloadPresets();
    showHideTools();
}

void QuickPresetsManager::reloadPresets() {
    if (isFiltered || (listed_ && shown_.lock() == listed_)) return;
    showRows(tables_[kPresetsTable], listed_ ? presetRows(*listed_) : std::vector<TableRow>());
    shown_ = listed_;
}

void QuickPresetsManager::refill() {
    fillTableWithBankName();
    refreshBankSelection();
}

void QuickPresetsManager::refillOnNextTurn() {
    post([this] { refill(); });
}

// --- selection ---

std::optional<std::size_t> QuickPresetsManager::bankRow() const {
    return rowOf(_listOfBank, getCurrentSelectedBankName(), &ListedBank::name);
}

std::optional<std::size_t> QuickPresetsManager::snapRow() const {
    const std::string key = getCurrentSelectedSnapID();
    return key == kNone ? std::nullopt : rowOf(_listOfSnapshots, key, std::identity());
}

void QuickPresetsManager::selectRow(int table, std::size_t row) {
    LibraryTable& shown = tables_[static_cast<std::size_t>(table)];
    if (!isFiltered) shown.selected = LibraryTable::Place{0, row};
}

QuickPresetsManager::Shown QuickPresetsManager::showSelection() {
    if (const auto row = bankRow()) {
        showBankRow(*row);
        if (!reader_.busy()) return showSnapRow() ? Shown::preset : Shown::bank;
        whenRead([this] { refreshSnapshotSelection(); });
        return Shown::coming;
    }
    stopReading();
    tools_.saveEnabled = false;
    _listOfSnapshots.clear();
    listed_ = nullptr;
    listedContent_.reset();
    if (!isFiltered) tables_[kBanksTable].selected.reset();
    reloadPresets();
    showHideTools();
    return Shown::nothing;
}

std::string_view QuickPresetsManager::whatIsMissing(Shown shown) {
    switch (shown) {
    case Shown::nothing:
        return "NO Bank was Selected!";
    case Shown::bank:
        return "NO Snapshot was Selected!";
    case Shown::preset:
    case Shown::coming:
        break;
    }
    return {};
}

void QuickPresetsManager::refreshBankSelection() {
    const Shown shown = showSelection();
    if (const std::string_view line = whatIsMissing(shown); !line.empty())
        instance_.log.write(line);
}

void QuickPresetsManager::refreshSnapshotSelection() {
    if (!showSnapRow()) instance_.log.write(whatIsMissing(Shown::bank));
}

bool QuickPresetsManager::showSnapRow() {
    const auto row = snapRow();
    if (row)
        selectRow(kPresetsTable, *row);
    else if (!isFiltered)
        tables_[kPresetsTable].selected.reset();
    return row.has_value();
}

void QuickPresetsManager::showBankRow(std::size_t row) {
    _currentBankNameSelected = _listOfBank[row].name;
    selectRow(kBanksTable, row);
    readBankFromDisk();
    fillTableWithSnapshotsName();
}

/// then runs with the bank's presets listed.
void QuickPresetsManager::selectBankRow(std::size_t row, Task then) {
    ++choices_;
    showBankRow(row);
    whenRead([this, then = std::move(then)] {
        refreshSnapshotSelection();
        if (then) then();
    });
}

void QuickPresetsManager::selectSnapRow(std::size_t row) {
    choose(_currentSnapNameSelected, _listOfSnapshots[row]);
    selectRow(kPresetsTable, row);
    LOAD_SNAPSHOT_WITH_FADE();
}

void QuickPresetsManager::tableView_didSelectRowAtIndexPath(int table, std::size_t row) {
    if (isFiltered) return selectFoundRow(table, row);
    if (table == kBanksTable && row < _listOfBank.size()) {
        shownProblem_.clear(); // whoever taps a bank wants to know again what is wrong with it
        inTurn([this, name = _listOfBank[row].name] {
            if (const auto now = rowOf(_listOfBank, name, &ListedBank::name)) selectBankRow(*now);
        });
    } else if (table == kPresetsTable && row < _listOfSnapshots.size()) {
        selectSnapRow(row);
    }
}

// --- editing ---

bool QuickPresetsManager::tableView_canEditRowAtIndexPath(int table, std::size_t row) const {
    if (isFiltered) return false;
    if (table == kBanksTable) return row < _listOfBank.size();
    // The rows may still be those of the bank selected before.
    return selectedContent() && row < _listOfSnapshots.size();
}

bool QuickPresetsManager::tableView_canMoveRowAtIndexPath(int table, std::size_t row) const {
    return table == kPresetsTable && tableView_canEditRowAtIndexPath(table, row);
}

void QuickPresetsManager::tableView_moveRowAtIndexPath_toIndexPath(int table, std::size_t from,
                                                                   std::size_t to) {
    if (table != kPresetsTable)
        return instance_.log.write("tableView:moveRowAtIndexPath:toIndexPath:");
    if (!tableView_canMoveRowAtIndexPath(table, from) || to >= _listOfSnapshots.size()) return;
    const auto tag = selectedTag();
    std::vector<std::string> keys = _listOfSnapshots;
    std::string moved = std::move(keys[from]);
    keys.erase(keys.begin() + static_cast<std::ptrdiff_t>(from));
    keys.insert(keys.begin() + static_cast<std::ptrdiff_t>(to), std::move(moved));

    changeBank(contentName_, orderingPresets(seen(selectedContent()), std::move(keys)),
               [this, tag](const auto&) {
                   refill();
                   if (!tag || !listed_) return;
                   for (const auto& snapshot : listed_->snapshots)
                       if (snapshot.hasTag && snapshot.tag == *tag)
                           _currentSnapNameSelected = snapshot.key;
                   fillTableWithSnapshotsName();
                   refreshSnapshotSelection();
               });
}

// --- buttons ---

void QuickPresetsManager::sort________________________________________(const void*) {
    isAscending = !isAscending;
    tools_.sortTint = isAscending ? std::optional(kToolTint) : std::nullopt;
    refill();
}

void QuickPresetsManager::EditTable(const void*) {
    bool& editing = tables_[kPresetsTable].editing;
    editing = !editing;
    tools_.editTint = editing ? std::optional(kToolTint) : std::nullopt;
    showHideTools();
}

void QuickPresetsManager::showHideTools() {
    constexpr float dimmed = 0.7f;
    tools_.toolbarTouches = !isFiltered;
    tools_.toolbarAlpha = isFiltered ? dimmed : 1.0f;
    tools_.deleteAllEnabled = tools_.shareEnabled = tools_.editEnabled = !_listOfSnapshots.empty();
}

} // namespace zephyra
