#include "library/quick_presets_manager.h"

#include "platform/audio_unit/midi_notices.h"
#include "tests/library/bank_fixture.h"
#include "tests/support/heard_instance.h"

#include <cerrno>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

namespace zephyra {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr const char* kSuffix = ".zephyra";
constexpr int kBanks = QuickPresetsManager::kBanksTable;
constexpr int kPresets = QuickPresetsManager::kPresetsTable;

struct TwoFolders {
    std::filesystem::path file(const std::string& bank) const { return shared / (bank + kSuffix); }
    TemporaryFolder shared, resources;
};

/// A store with its view, and a user who answers its alerts.
struct Store : QuickPresetsManagerDelegate {
    explicit Store(const TwoFolders& folders) {
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
    void run() { instance.runLoop.runPosted(); }
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
    }
    /// What a table shows, "*" before the selected row.
    std::vector<std::string> rows(int table) {
        std::vector<std::string> titles;
        const LibraryTable& shown = (*this)->table(table);
        for (const TableRow& row : shown.sections[0].rows) {
            titles.emplace_back(shown.selected && shown.selected->row == titles.size() ? "*" : "");
            titles.back() += row.title;
        }
        return titles;
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

class Presets : public ::testing::Test {
protected:
    static void write(const std::filesystem::path& file, const Bank& bank) {
        ASSERT_TRUE(writeBank(file, bank));
    }
    void threeBanks() { // "b" is empty
        write(folders.file("a"), {{"0 - x", named("A0")}, {"1 - x", named("A1")}});
        write(folders.file("b"), {});
        write(folders.file("c"), {{"0 - x", named("C0")}});
    }
    Bank onDisk(const std::string& name) { return readBank(folders.file(name)).value().bank; }

    TwoFolders folders;
    Store store{folders};
};

TEST_F(Presets, OnlyWhoRefreshesASelectionHearsThatThereIsNone) {
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

TEST_F(Presets, ASaveMakesABankAndAsksForANameThatIsNotTakenAndAFileName) {
    const DateAndTime now = currentDateAndTime(store.instance.clock);
    store->saveSnapAs();
    const std::string key = "0 - " + now.date + " | " + now.time;
    EXPECT_EQ(store.alert(), "Save Preset in: User " + key + ".zephyra");
    store.answer("Save", "Pads");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("*Pads"));
    EXPECT_EQ(store->getCurrentSelectedSnapID(), key);

    const struct {
        std::string typed, name, alert;
    } cases[] = {{"Пад", "Пад", ""},
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

TEST_F(Presets, AChosenBankGetsThePresetThoughRowsMoveMeanwhile) {
    threeBanks();
    store.select("a");
    store->saveSnapAs();
    store.answer("Save in a Bank", "New");
    EXPECT_EQ(store.alert(), "Select a Bank to Save: New");
    write(folders.file("aa"), {});
    store->sort________________________________________();
    store.answer("b");
    EXPECT_TRUE(hasSnapshotNamed(onDisk("b"), "New"));
    EXPECT_THAT(store.rows(kBanks), ElementsAre("c", "*b", "aa", "a"));
}

TEST_F(Presets, OverwritingReplacesWhatTheStateHasAndNothingElse) {
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

TEST_F(Presets, AFactoryBankIsLockedAndSavingIntoItMakesAUsersBankOfItsName) {
    const auto factory = folders.resources / "Clouds.zephyra";
    write(factory, {{"0", named("Mist")}});
    store.select("Clouds");
    EXPECT_EQ(store->table(kBanks).sections[0].rows.at(0).image, "744-locked.png");
    store.saveAs("Mine");
    EXPECT_THAT(store.rows(kPresets), ElementsAre("Mist", "*Mine"));
    EXPECT_THAT(store->getListOfBank(), ElementsAre(ListedBank{"Clouds.zephyra"}));
    EXPECT_EQ(readBank(factory).value().bank.size(), 1u);
    std::filesystem::remove(folders.file("Clouds")); // what is still in memory goes before it
    store->saveSnap();
    EXPECT_EQ(onDisk("Clouds").size(), 3u);
}

TEST_F(Presets, PresetsAndBanksTakeANewNameUnlessTheyCannot) {
    const std::string existing = "Warning: Existing file name";
    const std::string invalid = "Warning: Invalid file name";
    const struct {
        int table;
        std::string typed, name, alert;
    } cases[] = {{kPresets, "", "v1.2", ""},
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
        EXPECT_TRUE(std::filesystem::remove(folders.file(bank))) << typed;
    }
}

TEST_F(Presets, ABankWhoseFileHasAnOddNameIsUsedAndRenamedUnderTheNameItIsShownBy) {
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

TEST_F(Presets, SteppingWrapsAroundAndAnIndexFromMidiIsTakenAsNearAsThereIsOne) {
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
    const struct {
        int bank, preset;
        const char* loaded;
    } cases[] = {{0, 1, "A1 "}, {-3, -1, "A0 "}, {99, 99, "C0 "}, {1, 0, ""}};
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

TEST_F(Presets, ASearchListsPresetsAndBehindThemTheirBank) {
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
    store->searchBarSearchButtonClicked("user");
    store->tableView_didSelectRowAtIndexPath(kPresets, 0); // the bank itself
    EXPECT_EQ(store.loaded(), "");
    EXPECT_THAT(store.rows(kBanks), Contains("*User a0"));
}

TEST_F(Presets, MovingAPresetRenumbersTheBankAndKeepsTheSelection) {
    write(folders.file("a"), {{"0 - x", named("A")}, {"1 - y", named("B")}, {"2 - z", named("C")}});
    store.select("a");
    store->setCurrentSelectedSnapID("1 - y");
    store->tableView_moveRowAtIndexPath_toIndexPath(kPresets, 2, 0);
    EXPECT_THAT(store->getListOfSnapshots(), ElementsAre("0.000 - z", "0.001 - x", "0.002 - y"));
    EXPECT_THAT(store.rows(kPresets), ElementsAre("C", "A", "*B"));
    EXPECT_TRUE(onDisk("a") == *store->getSelectedBankDictionary());
}

TEST_F(Presets, DeletingTakesAwayWhatTheUserSawAndNothingOfAStoreThatIsGone) {
    threeBanks();
    store.select("a");
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

TEST_F(Presets, WhatCannotBeReadStaysUntilTheUserAgreesAndWhatCannotBeWrittenIsWrittenLater) {
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

TEST_F(Presets, ABankThatIsGoneLeavesNothingToTheOneNamedInItsPlace) {
    threeBanks();
    store.select("a");
    store->loadDefaultSnapshot_snapID("gone.zephyra", "0 - x");
    EXPECT_EQ(store.loaded(), "");
    EXPECT_THAT(store.rows(kPresets), ElementsAre());
    store->saveSnap();
    EXPECT_EQ(onDisk("gone").size(), 1u);
}

TEST_F(Presets, TwoInstancesSeeEachOthersBanksAndLoseNothing) {
    threeBanks();
    Store other{folders};
    other.select("c");
    store.select("c");
    store.saveAs("Mine");
    other.saveAs("Theirs");
    EXPECT_THAT(other.rows(kPresets), ElementsAre("C0", "Mine", "*Theirs"));
    other->addBank();
    store.run();
    EXPECT_EQ(store.rows(kBanks).size(), 4u);
}

} // namespace
} // namespace zephyra
