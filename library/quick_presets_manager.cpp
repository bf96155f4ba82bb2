// The life of the preset store, its selection, and what it asks of the run loop.

#include "library/quick_presets_manager.h"

#include "library/bank_edits.h"
#include "library/preset_dialogs.h"
#include "library/preset_tables.h"
#include "platform/audio_unit/midi_notices.h"

#include <utility>

namespace zephyra {

namespace {

DocumentImport::Kind bankDocuments() {
    const std::string extension(kBankExtension);
    return {{extension}, "You can Import only Presets Files: \n\n" + extension};
}

} // namespace

QuickPresetsManager::QuickPresetsManager(Instance& instance, QuickPresetsManagerDelegate* delegate)
    : instance_(instance), banks_(instance.folders),
      dataSource(delegate), tables_{emptyBanksTable(), emptyPresetsTable()},
      import_(instance, bankDocuments(),
              [this] {
                  refill();
                  tellOtherInstances();
              }),
      reader_(instance.runLoop, instance.log), searcher_(instance.runLoop, instance.log),
      changes_(std::in_place, instance.runLoop, instance.log, banks_) {
    INITIALIZE();
    readCurrentSelectionsForBankAndSnapshotsFromDisk();
    fillTableWithBankName();
    showSelection();
    fillTableWithSnapshotsName();
    updateDisplay();

    const auto observe = [this](const char* notice, NotificationCenter::Observer observer) {
        observers_.push_back(instance_.notifications.addObserver(notice, std::move(observer)));
    };
    observe(midi_notice::kSelectBank,
            [this](const std::any& index) { selectBankFromMidiNotification(index); });
    observe(midi_notice::kSelectPreset,
            [this](const std::any& index) { selectSnapFromMidiNotification(index); });
    observe(shared_folder_notice::kBanks, [this](const std::any&) {
        if (!tellingOthers_) refill();
    });
}

QuickPresetsManager::~QuickPresetsManager() {
    changes_.reset();
    for (const NotificationCenter::Token observer : observers_)
        instance_.notifications.removeObserver(observer);
}

void QuickPresetsManager::INITIALIZE() {
    _listOfBank.clear();
    _listOfSnapshots.clear();
    _currentBankNameSelected = _currentSnapNameSelected = "";
}

void QuickPresetsManager::viewWillAppear(bool) {
    tools_.searchText.clear();
    readCurrentSelectionsForBankAndSnapshotsFromDisk();
    fillTableWithBankName();
    refreshBankSelection();
}

void QuickPresetsManager::viewWillDisappear(bool) {
    if (isFiltered) endSearch();
    tools_.searchText.clear();
}

void QuickPresetsManager::dismissSnapshotsView() {
    if (tables_[kPresetsTable].editing) EditTable();
    if (dataSource) dataSource->dismissQuickPresetsManager();
}

void QuickPresetsManager::printSnapshotBankContents() const {
    if (!_currentBank) return;
    for (const auto& [key, value] : *_currentBank) {
        const auto text = writePropertyList(value);
        instance_.log.write("key: " + key + " value: " + (text ? text.value() : text.message()));
    }
}

// --- where, and what is selected ---

std::filesystem::path QuickPresetsManager::getAppGroupsFolder() const {
    return instance_.folders.shared;
}

std::filesystem::path QuickPresetsManager::getResourcesFolder() const {
    return instance_.folders.resources;
}

const std::string* QuickPresetsManager::selectedBank() const {
    const auto& name = _currentBankNameSelected;
    return name && !name->empty() && *name != kNone ? &*name : nullptr;
}

BankCache::Content QuickPresetsManager::selectedContent() const {
    const std::string* const name = selectedBank();
    return name && *name == contentName_ ? _currentBank : nullptr;
}

std::optional<QuickPresetsManager::SeenPreset> QuickPresetsManager::selectedPreset() const {
    const auto content = selectedContent();
    const std::string key = getCurrentSelectedSnapID();
    if (!content || key == kNone || !recordOf(*content, key)) return std::nullopt;
    return SeenPreset{contentName_, key, content};
}

std::optional<std::string> QuickPresetsManager::selectedTag() const {
    return getSnapshotNameFromID(getCurrentSelectedSnapID());
}

std::string QuickPresetsManager::getCurrentSelectedBankName() const {
    const std::string* const name = selectedBank();
    return name ? *name : kNone;
}

std::string QuickPresetsManager::getCurrentSelectedSnapID() const {
    const auto& key = _currentSnapNameSelected;
    return key && !key->empty() ? *key : kNone;
}

void QuickPresetsManager::setCurrentSelectedBankName(const std::optional<std::string>& name) {
    if (name) choose(_currentBankNameSelected, *name);
}

void QuickPresetsManager::setCurrentSelectedSnapID(const std::optional<std::string>& key) {
    if (key) choose(_currentSnapNameSelected, *key);
}

void QuickPresetsManager::choose(std::optional<std::string>& selected, const std::string& name) {
    selected = name;
    ++choices_;
}

std::string QuickPresetsManager::getSnapshotName() const {
    return selectedTag().value_or(kNone);
}

std::optional<std::string>
QuickPresetsManager::getSnapshotNameFromID(const std::string& key) const {
    const auto content = selectedContent();
    return content && key != kNone ? snapshotTag(*content, key) : std::nullopt;
}

// --- the run loop and alerts ---

void QuickPresetsManager::post(Task task) {
    instance_.runLoop.post([alive = std::weak_ptr(alive_), task = std::move(task)] {
        if (!alive.expired()) task();
    });
}

void QuickPresetsManager::postLoad(StateOrder::Number asked, Task task) {
    post([this, asked, task = std::move(task)] {
        if (asked >= cancelledBefore_) task();
    });
}

void QuickPresetsManager::cancelLoadsBefore(StateOrder::Number state) {
    cancelledBefore_ = std::max(cancelledBefore_, state);
    std::erase_if(turns_, [this](const Turn& turn) { return turn.asked < cancelledBefore_; });
}

/// The number of what is chosen now, or was when it had to wait.
StateOrder::Number QuickPresetsManager::asked() {
    return turnAsked_ ? *turnAsked_ : instance_.states.askOnMain();
}

void QuickPresetsManager::inTurn(Task task) {
    if (!reader_.busy() && turns_.empty()) return task();
    turns_.push_back({std::move(task), asked()});
}

void QuickPresetsManager::whenRead(Task task) {
    if (!reader_.busy()) return task();
    turns_.push_front({std::move(task), asked()});
}

void QuickPresetsManager::stopReading() {
    if (!reader_.busy()) return;
    reader_.cancel();
    post([this] { runTurns(); }); // with what is there instead
}

void QuickPresetsManager::runTurns() {
    while (!turns_.empty() && !reader_.busy()) {
        const Turn turn = std::move(turns_.front());
        turns_.pop_front();
        turnAsked_ = turn.asked;
        turn.task();
        turnAsked_.reset();
    }
}

void QuickPresetsManager::present(Alert alert) {
    for (AlertAction& action : alert.actions)
        if (action.chosen)
            action.chosen = [alive = std::weak_ptr(alive_),
                             chosen = std::move(action.chosen)](const std::string& text) {
                if (!alive.expired()) chosen(text);
            };
    post([this, alert = std::move(alert)] { instance_.alerts.present(alert); });
}

void QuickPresetsManager::report(const std::string& problem) {
    instance_.log.write(problem);
    present(warning(problem));
}

void QuickPresetsManager::tellOtherInstances() {
    tellingOthers_ = true;
    instance_.sharedFolder.post(shared_folder_notice::kBanks);
    tellingOthers_ = false;
}

} // namespace zephyra
