#include "library/quick_presets_manager.h"

#include "platform/audio_unit/midi_notices.h"
#include "platform/files/folder_entries.h"
#include "tests/library/bank_fixture.h"
#include "tests/support/heard_instance.h"

#include <atomic>

namespace zephyra {
namespace {

using namespace ::testing;

constexpr const char* kSuffix = ".zephyra";
constexpr int kBanks = QuickPresetsManager::kBanksTable;
constexpr int kPresets = QuickPresetsManager::kPresetsTable;

struct TwoFolders {
    fs::path file(const std::string& bank) const { return shared / (bank + kSuffix); }
    TemporaryFolder shared, resources;
};

/// A store with its view, and a user who answers its alerts. With a paced run loop, files are the
/// workers'.
struct Store : QuickPresetsManagerDelegate {
    explicit Store(const TwoFolders& folders, bool isPaced = false) {
        if (isPaced) instance.runLoop.tryAdvanceByWall(0);
        instance.clock.fix(1794750533);
        instance.folders = {folders.shared.path(), folders.resources.path()};
    }
    QuickPresetsManager* operator->() {
        if (!manager) manager = std::make_unique<QuickPresetsManager>(instance, this);
        return manager.get();
    }
    PropertyDictionary getState() override { return state; }
    void restoreStateProc(const PropertyDictionary& record) override {
        restored += *record.at(kSnapshotTags).as<std::string>() + " ";
    }
    /// Until nothing is left to do.
    void run() { instance.runLoop.finishWork(); }
    /// "title: message" of the alert that waits; empty for none.
    std::string alert() {
        run();
        const Alert* const shown = instance.alerts.current();
        return shown ? shown->title + ": " + shown->message : "";
    }
    void answer(const std::string& button, const std::string& text = {}) {
        run();
        EXPECT_TRUE(instance.alerts.answer(button, text)) << button;
        run();
    }
    void saveAs(const std::string& name) {
        (*this)->saveSnapAs();
        answer("Save", name);
    }
    void select(const std::string& bank) {
        (*this)->setCurrentSelectedBankName(bank + ".zephyra");
        (*this)->viewWillAppear();
        run();
    }
    /// What a table shows in the end, "*" before the selected row.
    std::vector<std::string> rows(int table) {
        run();
        return shown(table);
    }
    std::vector<std::string> shown(int table) {
        std::vector<std::string> titles;
        const LibraryTable& shown = (*this)->table(table);
        for (const TableRow& row : shown.sections[0].rows) {
            titles.emplace_back(shown.selected && shown.selected->row == titles.size() ? "*" : "");
            titles.back() += row.title;
        }
        return titles;
    }
    /// As MAIN goes on, while WORKER may wait. False when it does not come to that.
    bool comesToShow(int table, const std::vector<std::string>& titles) {
        for (int n = 0; n < 2000 && shown(table) != titles; ++n) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            instance.runLoop.runPosted();
        }
        return shown(table) == titles;
    }
    /// Names, since the last call.
    std::string loaded() {
        run();
        return std::exchange(restored, {});
    }

    HeardInstance instance;
    PropertyDictionary state = {{"Density_0", 0.5}};
    std::string restored;
    std::unique_ptr<QuickPresetsManager> manager;
};

struct StoreTest : ::testing::Test {
    explicit StoreTest(bool isPaced) : store(folders, isPaced) {}
    static void write(const fs::path& file, const Bank& bank) {
        ASSERT_TRUE(writeBank(file, bank));
    }
    /// Of which the second is empty.
    void threeBanks(const char* selected = nullptr) {
        write(folders.file("a"), {{"0 - x", named("A0")}, {"1 - x", named("A1")}});
        write(folders.file("b"), {});
        write(folders.file("c"), {{"0 - x", named("C0")}});
        if (selected) store.select(selected);
    }
    Bank onDisk(const std::string& name) {
        store.run();
        return readBank(folders.file(name)).value().bank;
    }

    TwoFolders folders;
    Store store;
};

/// Whether the run loop is paced.
struct Presets : StoreTest, ::testing::WithParamInterface<bool> {
    Presets() : StoreTest(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(PacedOrNot, Presets, testing::Bool());

/// Another program has the lock.
struct WaitingPresets : StoreTest {
    WaitingPresets() : StoreTest(true) {
        threeBanks("a");
        EXPECT_FALSE(lock.lock(folders.shared / BankFolder::kLockName));
    }
    FileLock lock;
};

TEST_P(Presets, OnlyWhoRefreshesASelectionHearsThatThereIsNone) {
    threeBanks();
    std::vector<std::string>& lines = store.instance.lines;
    store->showSelection();
    EXPECT_THAT(lines, ElementsAre());
    store->refreshBankSelection();
    store.select("a");
    store->refreshSnapshotSelection();
    EXPECT_THAT(lines, ElementsAre("NO Bank was Selected!", "NO Snapshot was Selected!",
                                   "NO Snapshot was Selected!"));
    lines.clear();
    store->loadDefaultSnapshot_snapID("a.zephyra", "1 - x");
    EXPECT_EQ(store->showSelection(), QuickPresetsManager::Shown::preset);
    EXPECT_THAT(lines, ElementsAre());
}

TEST_P(Presets, ASaveMakesABankAndAsksForANameThatIsNotTakenAndAFileName) {
    const DateAndTime now = currentDateAndTime(store.instance.clock);
    store->saveSnapAs();
    const std::string key = "0 - " + now.date + " | " + now.time;
    EXPECT_EQ(store.alert(), "Save Preset in: User " + key + ".zephyra");
    store.answer("Save", "Pads");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*Pads"));
    EXPECT_EQ(store->getCurrentSelectedSnapID(), key);

    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"Пад", "Пад", ""},
        {"Taken", "<unnamed>", ""},
        {"taken", "taken", ""},
        {"a/b", "<unnamed>", "Warning: Invalid file name"},
        {std::string(300, 'n'), "<unnamed>", "Warning: Invalid file name"}};
    write(folders.file("a"), {{"9", named("Taken")}});
    store.select("a");
    for (const auto& [typed, name, alert] : cases) {
        store.saveAs(typed);
        EXPECT_EQ(store->getSnapshotName(), name) << typed;
        EXPECT_EQ(store.alert(), alert) << typed;
        store.instance.alerts.answer("Ok");
    }
}

TEST_P(Presets, AChosenBankGetsThePresetThoughRowsMoveMeanwhile) {
    threeBanks("a");
    store->saveSnapAs();
    store.answer("Save in a Bank", "New");
    EXPECT_EQ(store.alert(), "Select a Bank to Save: New");
    write(folders.file("aa"), {});
    store->sort________________________________________();
    store.answer("b");
    EXPECT_TRUE(hasSnapshotNamed(onDisk("b"), "New"));
    EXPECT_THAT(store.rows(kBanks), ElementsAre("c", "*b", "aa", "a"));
}

TEST_P(Presets, OverwritingReplacesWhatTheStateHasAndNothingElse) {
    Bank bank = {{"0", named("A0")}, {"1", named("A1")}};
    recordOf(bank, "0")->emplace("Foreign", "kept");
    write(folders.file("a"), bank);
    store.state.emplace(kSnapshotTags, "wrong");
    store->loadDefaultSnapshot_snapID("a.zephyra", "0");
    store->saveSnapAs();
    store.answer("Overwrite Preset");
    EXPECT_EQ(store.alert(), "Overwrite: This operation will replace the A0's contents, do you "
                             "want to proceed?");
    store.instance.notifications.post(midi_notice::kSelectPreset, 1); // while the user thinks
    store.answer("YES");
    recordOf(bank, "0")->emplace("Density_0", 0.5);
    EXPECT_TRUE(onDisk("a") == bank);
}

TEST_P(Presets, AFactoryBankIsLockedAndSavingIntoItMakesAUsersBankOfItsName) {
    const auto factory = folders.resources / "Clouds.zephyra";
    write(factory, {{"0", named("Mist")}});
    store.select("Clouds");
    EXPECT_EQ(store->table(kBanks).sections[0].rows.at(0).image, "744-locked.png");
    store.saveAs("Mine");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("Mist", "*Mine"));
    EXPECT_THAT(store->getListOfBank(), ElementsAre(ListedBank{"Clouds.zephyra"}));
    EXPECT_EQ(readBank(factory).value().bank.size(), 1u);
    fs::remove(folders.file("Clouds")); // what is still in memory goes before it
    store->saveSnap();
    EXPECT_EQ(onDisk("Clouds").size(), 3u);
}

TEST_P(Presets, PresetsAndBanksTakeANewNameUnlessTheyCannot) {
    const std::string existing = "Warning: Existing file name";
    const std::string invalid = "Warning: Invalid file name";
    const std::tuple<int, std::string, std::string, std::string> cases[] = {
        {kPresets, "", "v1.2", ""},
        {kPresets, "Other", "v1.2", existing},
        {kPresets, "a\nb", "v1.2", invalid},
        {kPresets, "v2", "v2", ""},
        {kBanks, "c", "v1.2", existing},
        {kBanks, "../b", "v1.2", invalid},
        {kBanks, ".", "v1.2", invalid},
        {kBanks, "..", "v1.2", invalid},
        {kBanks, "a\\xFF", "v1.2", invalid},              // of a byte that is shown so
        {kBanks, std::string(248, 'n'), "v1.2", invalid}, // 256 with the extension
        {kBanks, "v2.0", "v2.0", ""},
        {kBanks, "v2.zephyra", "v2", ""}};
    for (const auto& [table, typed, name, alert] : cases) {
        write(folders.file("v1.2"), {{"0", named("v1.2")}, {"1", named("Other")}});
        write(folders.file("c"), {});
        store.select("v1.2");
        store->renameSnapshot(table, table == kBanks ? 1 : 0);
        EXPECT_EQ(store.alert(), table == kBanks ? "Rename Bank: " : "Rename Preset: ");
        const std::string offered = store.instance.alerts.current()->textField->text;
        EXPECT_EQ(offered, table == kBanks ? "v1.2" : "v1");
        store.answer("OK", typed);
        EXPECT_EQ(store.alert(), alert) << typed;
        store.instance.alerts.answer(0);
        const std::string bank = table == kBanks ? name : "v1.2";
        EXPECT_EQ(store->getCurrentSelectedBankName(), bank + ".zephyra");
        EXPECT_EQ(store->getSnapshotNameFromID("0"), table == kBanks ? "v1.2" : name);
        EXPECT_TRUE(fs::remove(folders.file(bank))) << typed;
    }
}

TEST_P(Presets, ABankWhoseFileHasAnOddNameIsUsedAndRenamedUnderTheNameItIsShownBy) {
    write(folders.file("b\xff"), {{"0", named("A")}});
    store.select("b\\xFF");
    EXPECT_THAT(store.rows(kBanks), ElementsAre("*b\\xFF"));
    store.saveAs("B");
    EXPECT_EQ(onDisk("b\xff").size(), 2u);
    for (const auto& [typed, alert] :
         {std::pair("b\\xFF", "Warning: Existing file name"), {"Plain", ""}}) {
        store->renameSnapshot(kBanks, 0);
        store.answer("OK", typed);
        EXPECT_EQ(store.alert(), alert);
        store.instance.alerts.answer(0);
    }
    EXPECT_EQ(onDisk("Plain").size(), 2u);
}

TEST_P(Presets, SteppingWrapsAroundAndAnIndexFromMidiIsTakenAsNearAsThereIsOne) {
    threeBanks();
    store->loadDefaultSnapshot_snapID("a.zephyra", "0 - x");
    EXPECT_EQ(store.restored, ""); // not before the caller has returned
    EXPECT_EQ(store.loaded(), "A0 ");
    for (const char* const next : {"A1 ", "", "C0 ", "A0 ", "A1 "}) {
        store->nextSnap();
        EXPECT_EQ(store.loaded(), next);
    }
    for (const char* const previous : {"A0 ", "C0 ", "", "A1 ", "A0 "}) {
        store->previousSnap();
        EXPECT_EQ(store.loaded(), previous);
    }
    store.select("b");
    const std::tuple<int, int, const char*> cases[] = {
        {0, 1, "A1 "}, {-3, -1, "A0 "}, {99, 99, "C0 "}, {1, 0, ""}};
    for (const auto& [bank, preset, loaded] : cases) {
        store.instance.notifications.post(midi_notice::kSelectBank, bank);
        store.instance.notifications.post(midi_notice::kSelectPreset, preset);
        EXPECT_EQ(store.loaded(), loaded) << bank;
    }
    store->selectBankFromIndex(0);
    store->selectSnapFromIndex(0);
    store->selectBankFromIndex(2); // has that key as well
    EXPECT_EQ(store.loaded(), "A0 ");
}

TEST_P(Presets, ASearchListsPresetsAndBehindThemTheirBank) {
    threeBanks();
    writeText(folders.file("broken a0"), "?");
    write(folders.resources / "User a0.zephyra", {{"k", named("a0 É")}, {"l", named("none")}});
    store.select("c");
    store->searchBarSearchButtonClicked("A0");
    EXPECT_THAT(store.rows(kBanks), ElementsAre("User a0", "User a0", "a", "broken a0"));
    ASSERT_THAT(store.rows(kPresets),
                ElementsAre("a0 É", "User a0.zephyra", "A0", "broken a0.zephyra"));
    EXPECT_EQ(store->table(kPresets).sections[0].rows[1].detail, "(Contains 2 Presets)");
    EXPECT_FALSE(store->tableView_canEditRowAtIndexPath(kPresets, 0));
    store->tableView_didSelectRowAtIndexPath(kPresets, 2);
    EXPECT_EQ(store.loaded(), "A0 ");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*A0", "A1"));
    store->searchBarSearchButtonClicked("c0");
    store->searchBarSearchButtonClicked("");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*A0", "A1"));
    store->searchBarSearchButtonClicked("c0");
    store->searchBarTextDidEndEditing("");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*A0", "A1"));
    store->searchBarSearchButtonClicked("user");
    store.run();
    store->tableView_didSelectRowAtIndexPath(kPresets, 0); // the bank itself
    EXPECT_EQ(store.loaded(), "");
    EXPECT_THAT(store.rows(kBanks), Contains("*User a0"));
}

TEST_P(Presets, MovingAPresetRenumbersTheBankAndKeepsTheSelection) {
    write(folders.file("a"), {{"0 - x", named("A")}, {"1 - y", named("B")}, {"2 - z", named("C")}});
    store.select("a");
    store->setCurrentSelectedSnapID("1 - y");
    store->tableView_moveRowAtIndexPath_toIndexPath(kPresets, 2, 0);
    EXPECT_THAT(store.rows(kPresets), ElementsAre("C", "A", "*B"));
    EXPECT_THAT(store->getListOfSnapshots(), ElementsAre("0.000 - z", "0.001 - x", "0.002 - y"));
    EXPECT_TRUE(onDisk("a") == *store->getSelectedBankDictionary());
}

TEST_P(Presets, DeletingTakesAwayWhatTheUserSawAndNothingOfAStoreThatIsGone) {
    threeBanks("a");
    store->tableView_commitDeleteForRowAtIndexPath(kPresets, 0);
    store.run();
    store->deleteAllSnapshots();
    store.run();
    write(folders.file("a"), {{"1 - x", named("A1")}, {"2 - x", named("Somebody else's")}});
    store.answer("YES");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("Somebody else's"));
    store->tableView_commitDeleteForRowAtIndexPath(kBanks, 0);
    store.run();
    EXPECT_THAT(store.rows(kBanks), ElementsAre("b", "c"));
    store.select("c");
    store->deleteAllSnapshots();
    store.run();
    store.manager.reset();
    store.answer("YES");
    EXPECT_EQ(onDisk("c").size(), 1u);
}

TEST_P(Presets, WhatCannotBeReadStaysUntilTheUserAgreesAndWhatCannotBeWrittenIsWrittenLater) {
    threeBanks();
    writeText(folders.file("b"), "<plist><dict><key>cut");
    store.select("b");
    EXPECT_THAT(store.alert(), HasSubstr("b.zephyra"));
    store.answer("Ok");
    store->viewWillAppear();
    EXPECT_EQ(store.alert(), ""); // once is enough

    for (const char* const button : {"Cancel", "Replace"}) {
        EXPECT_EQ(readText(folders.file("b")), "<plist><dict><key>cut");
        store.saveAs("Saved");
        EXPECT_THAT(store.alert(), HasSubstr("b.zephyra"));
        store.answer(button);
    }
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*Saved"));
    EXPECT_EQ(readText(folders.shared / "b.zephyra.unreadable"), "<plist><dict><key>cut");

    store.select("c");
    std::optional<CallsOf> noSpace(std::in_place, FileCall::write, ENOSPC);
    store.saveAs("New");
    EXPECT_THAT(store.alert(), HasSubstr("c.zephyra"));
    store.answer("Ok");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("C0", "*New"));
    store->addBank();
    noSpace.reset();
    store->writeBankToDisk(); // of the new bank, and what is left of others
    EXPECT_TRUE(hasSnapshotNamed(onDisk("c"), "New"));
}

TEST_P(Presets, ABankThatIsGoneLeavesNothingToTheOneNamedInItsPlace) {
    threeBanks("a");
    store->loadDefaultSnapshot_snapID("gone.zephyra", "0 - x");
    EXPECT_EQ(store.loaded(), "");
    EXPECT_THAT(store.rows(kPresets), ElementsAre());
    store->saveSnap();
    EXPECT_EQ(onDisk("gone").size(), 1u);
}

TEST_P(Presets, TwoInstancesSeeEachOthersBanksAndLoseNothing) {
    threeBanks();
    Store other{folders, GetParam()};
    other.select("c");
    store.select("c");
    store.saveAs("Mine");
    other.saveAs("Theirs");
    EXPECT_THAT(other.rows(kPresets), ElementsAre("C0", "Mine", "*Theirs"));
    other->addBank();
    other.run();
    EXPECT_EQ(store.rows(kBanks).size(), 4u);
    other->renameSnapshot(kBanks, 0);
    other.answer("OK", "Zebra");
    EXPECT_THAT(store.rows(kBanks), Contains("Zebra"));
    other->tableView_commitDeleteForRowAtIndexPath(kBanks, 0);
    other.run();
    EXPECT_EQ(store.rows(kBanks).size(), 3u);
}

TEST_P(Presets, AChangeOfWhatAnotherProgramMovedOrChangedIsRefusedAndMeetsNoNeighbour) {
    const Bank seen = {{"0 - x", named("A")}, {"1 - x", named("B")}, {"2 - x", named("C")}};
    const Bank moved = renumberedBank(seen, {"2 - x", "0 - x", "1 - x"});
    const Bank same = {{"0 - x", named("B")}, {"1 - x", named("A")}, {"2 - x", named("C")}};
    Bank changed = seen;
    recordOf(changed, "0 - x")->emplace("Density_0", 7.0);
    const std::function<void()> changes[] = {
        [&] { store->tableView_commitDeleteForRowAtIndexPath(kPresets, 0); },
        [&] { store->tableView_moveRowAtIndexPath_toIndexPath(kPresets, 0, 2); },
        [&] { store->performSnapOverwrite(); },
        [&] { store->renameCurrentSnapshot("D"); },
        [&] { store.answer("YES"); },     // delete all
        [&] { store.answer("OK", "D"); }, // rename
        [&] { store.answer("YES"); },     // overwrite
        [&] { store->tableView_commitDeleteForRowAtIndexPath(kBanks, 0); }};
    for (int n = 0; n < 8; ++n)
        for (const Bank& theirs : {moved, same, changed, Bank{{"2 - x", named("C")}}}) {
            SCOPED_TRACE(n);
            write(folders.file("a"), seen);
            store->loadDefaultSnapshot_snapID("a.zephyra", "0 - x");
            store.run();
            if (n == 4) store->deleteAllSnapshots();
            if (n == 5) store->renameSnapshot(kPresets, 0);
            if (n == 6) store->overwriteSnapshot();
            store.run();
            write(folders.file("a"), theirs);
            changes[n]();
            EXPECT_THAT(store.alert(), AnyOf(HasSubstr("\"A\" "), HasSubstr("\"a\" has been")));
            EXPECT_TRUE(onDisk("a") == theirs);
            store.answer("Ok");
            EXPECT_EQ(store.alert(), "");
        }
}

TEST_P(Presets, ASaveThatIsWrittenLaterTakesNoKeyThatAnotherProgramTookMeanwhile) {
    threeBanks("a");
    {
        const CallsOf noSpace(FileCall::write, ENOSPC);
        store->setCurrentSelectedSnapID("1 - x");
        store->renameCurrentSnapshot("A2");
        store.answer("Ok");
        store.saveAs("Mine");
        store.answer("Ok");
    }
    const std::string key = store->getCurrentSelectedSnapID();
    Bank theirs = onDisk("a");
    theirs.erase("0 - x"); // and the count names a key that is taken
    recordOf(theirs, "1 - x")->emplace("Density_0", 7.0);
    theirs.emplace(key, named("Theirs"));
    write(folders.file("a"), theirs);
    store->writeBankToDisk();
    theirs = onDisk("a");
    EXPECT_EQ(std::tuple(theirs.size(), snapshotTag(theirs, key)), std::tuple(3u, "Theirs"));
    EXPECT_TRUE(hasSnapshotNamed(theirs, "Mine") && hasSnapshotNamed(theirs, "A1"));
    EXPECT_THAT(store.alert(), HasSubstr("\"A1\"")); // was not renamed
}

TEST_P(Presets, WhatIsAskedOfABankThatIsBeingReadIsDoneWithWhatComes) {
    threeBanks();
    store->selectBankFromIndex(2);
    store->selectSnapFromIndex(0);
    store->cancelLoadsBefore(store.instance.states.ask()); // a session comes
    EXPECT_EQ(store.loaded(), "");
    store.select("a");
    store->selectBankFromIndex(1);
    store->nextSnap();
    store->setCurrentSelectedBankName("a.zephyra");
    store->showSelection(); // which need not be read
    EXPECT_NE(store.loaded(), "");

    std::atomic<int> reads{0};
    const GateScope gate([&](FileCall call, const fs::path& path) {
        if (call == FileCall::read && path == folders.file("d") && ++reads == 1)
            write(path, {{"0 - x", named("New")}}); // while the old one is open
        return 0;
    });
    write(folders.file("d"), {{"0 - x", named("Old")}});
    store.select("d");
    if (!GetParam()) store->viewWillAppear();
    EXPECT_THAT(store.rows(kPresets), ElementsAre(HasSubstr("New")));
}

TEST_F(WaitingPresets, AreShownAndWrittenInOrderWhileTheUserGoesOnPlaying) {
    store.state.emplace("Number", 1);
    store->saveSnap();
    EXPECT_TRUE(store.comesToShow(kPresets, {"A0", "A1", "<unnamed>"}));
    store->tableView_commitDeleteForRowAtIndexPath(kPresets, 0); // behind the first
    store.state["Number"] = 2;
    store->saveSnap();
    store->tableView_commitDeleteForRowAtIndexPath(kBanks, 1);
    store->tableView_didSelectRowAtIndexPath(kBanks, 2);
    store.instance.notifications.post(midi_notice::kSelectPreset, 0);
    EXPECT_TRUE(store.comesToShow(kPresets, {"*C0"}));
    EXPECT_EQ(std::exchange(store.restored, {}), "C0 ");
    EXPECT_EQ(readBank(folders.file("a")).value().bank.size(), 2u);
    lock.unlock();
    const Bank bank = onDisk("a");
    std::vector<PropertyValue> numbers;
    for (const auto& [key, record] : bank)
        if (snapshotTag(record) == kUnnamed)
            numbers.push_back(record.as<PropertyDictionary>()->at("Number"));
    EXPECT_THAT(numbers, ElementsAre(PropertyValue(1), PropertyValue(2)));
    EXPECT_EQ(bank.size(), 3u);
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*C0")); // what was chosen meanwhile stays
    EXPECT_THAT(store.rows(kBanks), ElementsAre("a", "*c"));
    write(folders.file("a"), {{"0 - x", named("Theirs")}}); // and what waited is forgotten
    store.select("a");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*Theirs"));
}

TEST(PacedPresets, ShowABankThatOthersWriteWithoutPause) {
    const TwoFolders folders;
    Store store(folders, true);
    ASSERT_TRUE(writeBank(folders.file("a"), {{"0 - x", named("A0")}}));
    const Bank others[] = {{{"0 - x", named("Other")}, {"1 - x", named("A1")}},
                           {{"0 - x", named("Longer")}}};
    std::atomic<int> written = 0; // by a worker
    const GateScope gate([&](FileCall call, const fs::path& path) {
        if (call == FileCall::close && path == folders.file("a") && written < 8) {
            const auto bytes = writePropertyList(PropertyDictionary(others[written++ % 2]));
            writeText(path, bytes.value());
        }
        return 0;
    });
    store->setCurrentSelectedBankName("a.zephyra");
    store->viewWillAppear();
    EXPECT_TRUE(store.comesToShow(kPresets, {"A0"}));
    EXPECT_LT(written, 8);
    EXPECT_THAT(store.rows(kPresets), ElementsAre("Longer"));
}

TEST_F(WaitingPresets, MeetWhatThoseBeforeThemMakeOfThePreset) {
    store->setCurrentSelectedSnapID("0 - x");
    for (const int density : {1, 2, 3}) {
        store.state["Density_0"] = density;
        store->performSnapOverwrite();
    }
    store->renameCurrentSnapshot("B0");
    lock.unlock();
    EXPECT_EQ(store.alert(), "");
    Bank bank = onDisk("a");
    EXPECT_EQ(snapshotTag(bank, "0 - x"), "B0");
    EXPECT_EQ(recordOf(bank, "0 - x")->at("Density_0"), PropertyValue(3));
}

TEST_F(WaitingPresets, StayInMemoryWhenTheLockIsNotFreeInTime) {
    store->bankFolder().setLockWait({.seconds = 0.02});
    store->saveSnap();
    EXPECT_THAT(store.alert(), HasSubstr(BankFolder::kLockName));
    store.answer("Ok");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("A0", "A1", "*<unnamed>"));
    EXPECT_EQ(onDisk("a").size(), 2u);
    lock.unlock();
    store.manager.reset(); // the last chance
    EXPECT_EQ(onDisk("a").size(), 3u);
}

TEST_F(WaitingPresets, AreWrittenThoughTheirStoreEndsOrGivenUpWithALineWhenTheLockStaysTaken) {
    store->bankFolder().setLockWait({.seconds = 0.02});
    for (int n = 0; n < 3; ++n) store->saveSnap();
    store.manager.reset();
    EXPECT_THAT(store.instance.lines, Contains(HasSubstr(BankFolder::kLockName)));
    EXPECT_EQ(onDisk("a").size(), 2u);
    store.select("a");
    store->saveSnap();
    store->renameSnapshot(kBanks, 0);
    store.instance.runLoop.runPosted();
    EXPECT_TRUE(store.instance.alerts.answer("OK", "Renamed"));
    store->saveSnap();
    std::thread free([this] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        lock.unlock();
    });
    store.manager.reset();
    free.join();
    EXPECT_EQ(onDisk("Renamed").size(), 4u);
    EXPECT_FALSE(fs::exists(folders.file("a")));
}

TEST_F(WaitingPresets, GoIntoTheBankThatWasMadeOrRenamedBefore) {
    store->addBank();
    store->saveSnap();
    EXPECT_THAT(store.shown(kBanks), ElementsAre(HasSubstr("*User"), "a", "b", "c"));
    const std::string made = store->getCurrentSelectedBankName();
    store->tableView_didSelectRowAtIndexPath(kBanks, 1);
    store->renameSnapshot(kBanks, 1);
    store.instance.runLoop.runPosted();
    EXPECT_TRUE(store.instance.alerts.answer("OK", "Renamed"));
    store->saveSnap();
    lock.unlock();
    EXPECT_EQ(onDisk("Renamed").size(), 3u);
    EXPECT_EQ(onDisk(std::string(stemOf(made))).size(), 1u);
    EXPECT_FALSE(fs::exists(folders.file("a")));
    EXPECT_EQ(store.alert(), "");
    EXPECT_THAT(store.instance.lines, Each(Not(HasSubstr("no file exist"))));
}

} // namespace
} // namespace zephyra
