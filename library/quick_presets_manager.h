// QuickPresetsManager: the preset store, banks of presets that the user saves, finds and loads.
#pragma once

#include "library/bank_folder.h"
#include "library/bank_queue.h"
#include "library/document_import.h"
#include "library/library_table.h"
#include "library/preset_edits.h"
#include "library/preset_search.h"
#include "library/quick_presets_manager_delegate.h"
#include "platform/instance.h"
#include "platform/threads/worker.h"

#include <algorithm>
#include <any>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

/// The logic of two tables (banks, presets) and the dialogs around them; draws nothing. Every
/// change is written at once. What fails is logged, shown as an alert, and stays in memory; a
/// change of what another program has changed meanwhile is refused with an alert. While the run
/// loop is paced, files are read, searched and written on WORKER: lists are empty until a bank has
/// come, and what is asked of it meanwhile is done then. Everything is MAIN.
class QuickPresetsManager {
public:
    static constexpr const char* kNone = "---"; ///< for readers, when nothing is selected

    /// Lists what is there (in a shared folder that may be missing). delegate may be null, then
    /// nothing is saved or loaded. Both must outlive this.
    QuickPresetsManager(Instance& instance, QuickPresetsManagerDelegate* delegate);
    ~QuickPresetsManager();
    QuickPresetsManager(const QuickPresetsManager&) = delete;
    QuickPresetsManager& operator=(const QuickPresetsManager&) = delete;

    // Where.
    std::filesystem::path getAppGroupsFolder() const;
    std::filesystem::path getResourcesFolder() const;

    // What is there, and what is selected.
    /// As last read; null for none, or one that cannot be read. It may still be the bank selected
    /// before, while the file of the one selected now is missing.
    const Bank* getSelectedBankDictionary() const { return _currentBank.get(); }
    const std::vector<ListedBank>& getListOfBank() const { return _listOfBank; }
    const std::vector<std::string>& getListOfSnapshots() const { return _listOfSnapshots; }
    std::string getCurrentSelectedBankName() const; ///< file name, kNone for none
    std::string getCurrentSelectedSnapID() const;   ///< key, kNone for none
    void setCurrentSelectedBankName(const std::optional<std::string>& name);
    void setCurrentSelectedSnapID(const std::optional<std::string>& key);
    void unselectSnaphot() { choose(_currentSnapNameSelected, kNone); }
    std::string getSnapshotName() const;
    std::optional<std::string> getSnapshotNameFromID(const std::string& key) const;

    /// What of the selection is there to be shown.
    enum class Shown {
        nothing,
        bank,
        preset,
        coming, ///< the bank is being read; then the log hears what is missing
    };
    /// Selects the rows of the bank and the preset that are selected, without loading; the lists
    /// are empty without a bank. For who does not ask on the user's behalf: nothing is logged.
    Shown showSelection();
    /// "NO Bank was Selected!" or "NO Snapshot was Selected!"; empty when both were.
    static std::string_view whatIsMissing(Shown shown);

    void fillTableWithBankName();
    void fillTableWithSnapshotsName();
    void refreshBankSelection(); ///< showSelection, with a log line about what is missing
    void refreshSnapshotSelection();
    void readBankFromDisk();
    void writeBankToDisk();
    // No effect: the host's session keeps the selection, and screens draw the tables.
    void readCurrentSelectionsForBankAndSnapshotsFromDisk() {}
    void writeCurrentSelectionsForBankAndSnapshotsToDisk() {}
    void updateDisplay() {}

    // Saving.
    void addBank(const void* sender = nullptr);
    void saveSnap();
    void saveSnapAs();
    void saveNewPresetMode() { saveSnapAs(); }
    void overwriteSnapshot(const void* sender = nullptr);
    void performSnapOverwrite();
    void collectSnapshotInformation(PropertyDictionary& record);

    // Renaming and deleting.
    void renameSnapshot(int table, std::size_t row); ///< a row's rename button
    void renameCurrentSnapshot(const std::string& name);
    void deleteAllSnapshots();

    // Loading.
    void LOAD_SNAPSHOT_WITH_FADE();
    void loadSnap(const std::string& key);
    void loadStateFromDictionary(std::shared_ptr<const PropertyDictionary> record);
    void loadDefaultSnapshot_snapID(const std::string& bank, const std::string& key);
    /// What was chosen before that state was asked for, but waits for the run loop or for a bank
    /// that is being read, is not loaded: all of it is other now.
    void cancelLoadsBefore(StateOrder::Number state);

    // Stepping through.
    void nextSnap();
    void previousSnap();
    void selectRandomSnap();
    void selectBankFromIndex(std::int64_t index);
    void selectSnapFromIndex(std::int64_t index);
    void selectBankFromMidiNotification(const std::any& object); ///< an int, else nothing happens
    void selectSnapFromMidiNotification(const std::any& object);

    // Searching.
    void searchBarSearchButtonClicked(const std::string& text);
    void searchBarTextDidEndEditing(const std::string& text);
    void restoreLastSelection();

    // Sharing and importing.
    void share() { openInProcedure(); }
    void openInProcedure();
    void open_AUv3_main_APP();
    void documentPicker_didPickDocumentsAtURLs(const std::vector<std::filesystem::path>& documents);
    void documentPicker_proc_didPickDocumentAtURL(const std::filesystem::path& document);

    // Tables.
    static constexpr int kBanksTable = 0, kPresetsTable = 1; ///< their tags
    const LibraryTable& table(int tag) const { return tables_[static_cast<std::size_t>(tag)]; }
    void tableView_didSelectRowAtIndexPath(int table, std::size_t row);
    bool tableView_canEditRowAtIndexPath(int table, std::size_t row) const;
    bool tableView_canMoveRowAtIndexPath(int table, std::size_t row) const;
    void tableView_commitDeleteForRowAtIndexPath(int table, std::size_t row); ///< a swipe
    void tableView_moveRowAtIndexPath_toIndexPath(int table, std::size_t from, std::size_t to);

    // Buttons.
    void sort________________________________________(const void* sender = nullptr);
    void EditTable(const void* sender = nullptr);
    void dismissSnapshotsView();
    void viewWillAppear(bool animated = false);
    void viewWillDisappear(bool animated = false);
    void showHideTools();
    void printSnapshotBankContents() const;

    /// How buttons and toolbar look.
    struct Tools {
        bool saveEnabled = false, deleteAllEnabled = false, shareEnabled = false,
             editEnabled = false;
        bool toolbarTouches = true;
        float toolbarAlpha = 1.0f;
        std::optional<TableColour> sortTint = {}, editTint = {};
        std::string searchText = {};
    };
    const Tools& tools() const { return tools_; }
    bool filtered() const { return isFiltered; }

    BankFolder& bankFolder() { return banks_; }

private:
    struct RenamedItem {
        int table;
        std::string bank;
        std::string key;       ///< of a preset
        BankContent seen = {}; ///< that held the preset
    };
    using Task = std::function<void()>;
    using Done = std::function<void(const BankFolder::Changed& changed)>;
    /// A bank and a preset in it as they were shown, which never null content holds.
    struct SeenPreset {
        std::string bank, key;
        BankContent content;
    };

    void INITIALIZE();

    // Tables.
    std::optional<std::size_t> bankRow() const; ///< of the selected bank; none for none
    std::optional<std::size_t> snapRow() const;
    void selectRow(int table, std::size_t row);
    void selectBankRow(std::size_t row, Task then = {});
    void showBankRow(std::size_t row);
    bool showSnapRow();
    void selectSnapRow(std::size_t row);
    void selectFoundRow(int table, std::size_t row);
    void stepToNext();
    void reloadPresets();
    void refill();
    void refillOnNextTurn();
    void endSearch();

    // The selected bank and its content; null for none.
    const std::string* selectedBank() const;
    BankCache::Content selectedContent() const;
    std::optional<SeenPreset> selectedPreset() const;
    std::optional<std::string> selectedTag() const;
    void choose(std::optional<std::string>& selected, const std::string& name);

    // Reading banks. Tasks that need a bank which is being read wait for it, in their order.
    StateOrder::Number asked();
    void inTurn(Task task);   ///< now, or behind whatever waits
    void whenRead(Task task); ///< now, or as soon as the bank is there
    void runTurns();
    void stopReading();
    void takeContent(const std::string& name, const Result<BankContent>& content);
    void setContent(const std::string& name, BankContent content);
    struct Found {
        std::vector<FoundPreset> presets;
        std::vector<TableRow> bankRows, presetRows;
    };
    Found search(const std::vector<ListedBank>& list, const std::string& text,
                 const std::atomic<bool>& cancelled); ///< MAIN or WORKER
    void showFound(Found found);

    // Changing banks.
    SeenBank seen(BankContent content);
    void changeBank(const std::string& name, BankFolder::Change change, Done done = {},
                    BankFolder::Unreadable unreadable = BankFolder::Unreadable::refuse);
    void finishChange(const std::string& name, const BankFolder::Changed& changed,
                      const Done& done);
    void offerReplacement(const std::string& name, const std::string& problem,
                          BankFolder::Change change, Done done);
    void showProblemOfBank(const std::string& name, const std::string& problem);
    void saveInto(const std::string& bank, const std::string& typed);
    void savePrepared(const std::string& bank, const std::string& typed, std::uint64_t choices);
    void presentSaveDialog();
    void presentSelectBankDialog(const std::string& typed);
    void presentOverwriteDialog(const SeenPreset& preset);
    void overwrite(const SeenPreset& preset);
    /// Sets a display name unless another preset of the bank has it.
    void setSnapshotName(const SeenPreset& preset, const std::string& name,
                         const std::function<void()>& nameIsTaken);
    void rename(const RenamedItem& item, const std::string& typed);
    void renameBank(const std::string& from, const std::string& typed);
    void finishRename(const std::string& from, const std::string& to, const Result<bool>& moved);
    void deleteSnapshot(const std::string& key);
    void deleteBank(const std::string& name);
    void tellOtherInstances();

    void loadSnap(const BankCache::Content& content, const std::string& key,
                  StateOrder::Number asked);

    // Alerts and the run loop, which may outlive this.
    void post(Task task);
    /// Unless loads that were asked for then are cancelled before.
    void postLoad(StateOrder::Number asked, Task task);
    void present(Alert alert);
    void report(const std::string& problem);

    Instance& instance_;
    BankFolder banks_;
    std::vector<ListedBank> _listOfBank;
    std::vector<std::string> _listOfSnapshots;
    BankCache::Content _currentBank;
    std::string contentName_; // the bank that _currentBank is of
    std::optional<std::string> _currentBankNameSelected, _currentSnapNameSelected;
    std::optional<RenamedItem> _itemToRename; // while its dialog waits
    std::vector<FoundPreset> filteredDataSnapshots;
    bool isFiltered = false, isAscending = false;
    QuickPresetsManagerDelegate* dataSource; // the main view controller
    std::array<LibraryTable, 2> tables_;
    std::shared_ptr<const BankSummary> listed_; // of _listOfSnapshots; null for none
    std::weak_ptr<const Bank> listedContent_;   // which nobody else may keep alive
    std::weak_ptr<const BankSummary> shown_;    // of the presets' rows
    Tools tools_;
    std::string shownProblem_; // of the selected bank, so that it is shown once
    bool tellingOthers_ = false;
    StateOrder::Number cancelledBefore_ = 0;
    std::uint64_t choices_ = 0; // how often somebody chose a bank or a preset
    struct Turn {
        Task task;
        StateOrder::Number asked;
    };
    std::deque<Turn> turns_;                      // wait for the bank that is being read
    std::optional<StateOrder::Number> turnAsked_; // of the turn that runs
    DocumentImport import_;
    std::vector<NotificationCenter::Token> observers_;
    std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
    Worker reader_, searcher_;
    std::optional<BankQueue> changes_; // none once the store ends
    std::shared_ptr<OwnEdits> own_;    // while changes wait
};

} // namespace zephyra
