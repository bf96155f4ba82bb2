// Loading presets, stepping through them, searching, sharing and importing.

#include "library/bank_edits.h"
#include "library/preset_tables.h"
#include "library/quick_presets_manager.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

/// index within a list of count, which is not empty.
std::size_t clamped(std::int64_t index, std::size_t count) {
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(index, 0, static_cast<std::int64_t>(count) - 1));
}

std::size_t randomIndex(std::size_t count, RandomSource& random) {
    return random.next32() % count;
}

} // namespace

// --- loading: applied only when the table's callback, and whoever asked, have returned ---

void QuickPresetsManager::LOAD_SNAPSHOT_WITH_FADE() {
    // Of this bank, though another, with the same key, may be selected by then.
    if (!snapRow()) return;
    const StateOrder::Number number = asked();
    postLoad(number, [this, number, content = selectedContent(), key = getCurrentSelectedSnapID()] {
        loadSnap(content, key, number);
    });
}

void QuickPresetsManager::loadSnap(const std::string& key) {
    loadSnap(selectedContent(), key, asked());
}

void QuickPresetsManager::loadSnap(const BankCache::Content& content, const std::string& key,
                                   StateOrder::Number asked) {
    const bool isKey = content && key != kNone;
    const PropertyDictionary* const record = isKey ? recordOf(*content, key) : nullptr;
    if (!record) return;
    // Contents never change, so a share of one is as good as a copy.
    postLoad(asked,
             [this, asked, state = std::shared_ptr<const PropertyDictionary>(content, record)] {
                 if (dataSource) dataSource->restoreStateProc_asked(*state, asked);
             });
}

void QuickPresetsManager::loadStateFromDictionary(
    std::shared_ptr<const PropertyDictionary> record) {
    if (dataSource && record) dataSource->restoreStateProc(*record);
}

void QuickPresetsManager::loadDefaultSnapshot_snapID(const std::string& bank,
                                                     const std::string& key) {
    inTurn([this, bank, key] {
        setCurrentSelectedBankName(bank);
        setCurrentSelectedSnapID(key);
        refill();
        whenRead([this, key] {
            fillTableWithSnapshotsName();
            loadSnap(key);
        });
    });
}

// --- stepping through ---

void QuickPresetsManager::nextSnap() {
    inTurn([this] { stepToNext(); });
}

void QuickPresetsManager::stepToNext() {
    refill();
    whenRead([this] {
        if (_listOfBank.empty()) return;
        const std::size_t next = snapRow().value_or(0) + 1;
        if (next < _listOfSnapshots.size()) return selectSnapRow(next);
        selectBankRow((bankRow().value_or(0) + 1) % _listOfBank.size(), [this] {
            if (!_listOfSnapshots.empty()) selectSnapRow(0);
        });
    });
}

void QuickPresetsManager::previousSnap() {
    inTurn([this] {
        refill();
        whenRead([this] {
            if (_listOfBank.empty()) return;
            const std::size_t row = snapRow().value_or(0);
            if (row >= 1) return selectSnapRow(row - 1);
            const std::size_t bank = bankRow().value_or(0);
            selectBankRow((bank > 0 ? bank : _listOfBank.size()) - 1, [this] {
                if (!_listOfSnapshots.empty()) selectSnapRow(_listOfSnapshots.size() - 1);
            });
        });
    });
}

void QuickPresetsManager::selectRandomSnap() {
    inTurn([this] {
        fillTableWithBankName();
        if (_listOfBank.empty()) return;
        selectBankRow(randomIndex(_listOfBank.size(), instance_.random), [this] {
            if (_listOfSnapshots.empty()) return stepToNext();
            selectSnapRow(randomIndex(_listOfSnapshots.size(), instance_.random));
        });
    });
}

void QuickPresetsManager::selectBankFromIndex(std::int64_t index) {
    inTurn([this, index] {
        fillTableWithBankName();
        if (!_listOfBank.empty()) selectBankRow(clamped(index, _listOfBank.size()));
    });
}

void QuickPresetsManager::selectSnapFromIndex(std::int64_t index) {
    inTurn([this, index] {
        fillTableWithSnapshotsName();
        if (!_listOfSnapshots.empty()) selectSnapRow(clamped(index, _listOfSnapshots.size()));
    });
}

void QuickPresetsManager::selectBankFromMidiNotification(const std::any& object) {
    if (const int* const index = std::any_cast<int>(&object)) selectBankFromIndex(*index);
}

void QuickPresetsManager::selectSnapFromMidiNotification(const std::any& object) {
    if (const int* const index = std::any_cast<int>(&object)) selectSnapFromIndex(*index);
}

// --- searching ---

void QuickPresetsManager::searchBarSearchButtonClicked(const std::string& text) {
    tools_.searchText = text;
    searcher_.cancel(); // for another text
    if (text.empty()) {
        isFiltered = false;
        return restoreLastSelection();
    }
    if (!instance_.runLoop.isPaced()) return showFound(search(_listOfBank, text, false));
    searcher_.start([this, list = _listOfBank, text](const Worker::Cancelled& cancelled) {
        auto found = std::make_shared<Found>(search(list, text, cancelled));
        return RunLoop::Task([this, found] { showFound(std::move(*found)); });
    });
}

QuickPresetsManager::Found QuickPresetsManager::search(const std::vector<ListedBank>& list,
                                                       const std::string& text,
                                                       const std::atomic<bool>& cancelled) {
    Found found{searchPresets(banks_, list, text, cancelled), {}, {}};
    found.bankRows = foundBankRows(found.presets);
    found.presetRows = foundPresetRows(found.presets);
    return found;
}

void QuickPresetsManager::showFound(Found found) {
    isFiltered = true;
    filteredDataSnapshots = std::move(found.presets);
    showRows(tables_[kBanksTable], std::move(found.bankRows));
    showRows(tables_[kPresetsTable], std::move(found.presetRows));
    for (LibraryTable& table : tables_) table.selected.reset();
    shown_.reset();
    showHideTools();
}

void QuickPresetsManager::searchBarTextDidEndEditing(const std::string& text) {
    tools_.searchText = text;
    if (text.empty()) endSearch();
}

void QuickPresetsManager::restoreLastSelection() {
    post([this] {
        refill();
        updateDisplay();
    });
}

void QuickPresetsManager::endSearch() {
    searcher_.cancel();
    isFiltered = false;
    tools_.searchText.clear();
    refill();
}

void QuickPresetsManager::selectFoundRow(int table, std::size_t row) {
    if (row >= filteredDataSnapshots.size()) return;
    const auto [bank, tag, key] = filteredDataSnapshots[row];
    choose(_currentBankNameSelected, bank);
    if (table == kPresetsTable) choose(_currentSnapNameSelected, key);
    shownProblem_.clear();
    endSearch();
    if (table == kPresetsTable) whenRead([this] { LOAD_SNAPSHOT_WITH_FADE(); });
}

// --- sharing and importing ---

void QuickPresetsManager::openInProcedure() {
    const std::string* const bank = selectedBank();
    if (!bank) return;
    changes_->add(*bank, [this](BankFolder& banks, const std::string& name) {
        auto dropped = banks.retryAll(); // what is passed on is what is shown
        return RunLoop::Task([this, dropped = std::move(dropped), file = banks.locate(name)] {
            for (const std::string& line : dropped) report(line);
            if (file.empty()) return;
            instance_.documents.present({.kind = DocumentRequest::Kind::openIn,
                                         .document = file,
                                         .anchor = "share"}); // takes the place of an older menu
        });
    });
}

void QuickPresetsManager::open_AUv3_main_APP() {
    instance_.documents.present(
        {.kind = DocumentRequest::Kind::importCopies,
         .types = {"public.item"},
         .picked = [this, alive = std::weak_ptr(alive_)](const auto& documents) {
             if (!alive.expired()) documentPicker_didPickDocumentsAtURLs(documents);
         }});
}

void QuickPresetsManager::documentPicker_didPickDocumentsAtURLs(
    const std::vector<std::filesystem::path>& documents) {
    for (const auto& document : documents) documentPicker_proc_didPickDocumentAtURL(document);
}

void QuickPresetsManager::documentPicker_proc_didPickDocumentAtURL(
    const std::filesystem::path& document) {
    import_.importDocument(document);
}

} // namespace zephyra
