#include "library/bank_folder.h"

#include "library/preset_edits.h"
#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

const std::string kName = "Bank.zephyra";

/// Two folders, with a factory bank, and what is done to the user's.
struct BankFolderTest : BankFixture {
    BankFolderTest() { EXPECT_TRUE(writeBank(factory(), {{"0 - f", named("F")}})); }

    fs::path factory() const { return folders_.resources / "Factory.zephyra"; }
    std::vector<std::string> keys(const std::string& name) {
        const auto content = banks_.read(name);
        return content ? sortedKeys(*content.value()) : std::vector{content.message()};
    }

    BankFolder banks_{folders_};
};

TEST_F(BankFolderTest, AUsersBankHidesTheFactorysAndStartsWithItsPresets) {
    writeText(folders_.resources / "no bank.txt", "");
    writeText(folders_.resources / ".zephyra", "");
    ASSERT_TRUE(banks_.create("a.zephyra").value());
    ASSERT_FALSE(banks_.create("a.zephyra").value());
    fs::create_directory(folders_.shared / "Z folder.zephyra");
    EXPECT_THAT(banks_.list(),
                ElementsAre(ListedBank{"Factory.zephyra", kFactoryMarker},
                            ListedBank{"Z folder.zephyra"}, ListedBank{"a.zephyra"}));
    EXPECT_FALSE(banks_.isInSharedFolder("Factory.zephyra"));

    EXPECT_EQ(banks_.change("Factory.zephyra", adding("1 - u")).problem, "");
    EXPECT_EQ(banks_.list().front(), ListedBank{"Factory.zephyra"});
    EXPECT_EQ(banks_.locate("Factory.zephyra"), folders_.shared / "Factory.zephyra");
    EXPECT_THAT(keys("Factory.zephyra"), ElementsAre("0 - f", "1 - u"));
    EXPECT_EQ(readBank(factory()).value().bank.size(), 1u);
}

TEST_F(BankFolderTest, OnlyPlainFileNamesOfBanksAreTaken) {
    const std::string decomposed = "Ka\xcc\x88se v1.2 \xe9\x9f\xb3.zephyra";
    EXPECT_EQ(banks_.change(decomposed, adding("0 - a")).problem, "");
    EXPECT_THAT(banks_.list().back(), (ListedBank{decomposed}));
    EXPECT_FALSE(banks_.rename(decomposed, decomposed).value()); // taken
    const char* const impossible[] = {
        "../x.zephyra", "", "x.wav", ".zephyra", "\xff.zephyra", "\\x41.zephyra", "\\x00.zephyra",
        "\\x2F.zephyra"};
    for (const char* const name : impossible) {
        SCOPED_TRACE(name);
        const auto changed = banks_.change(name, adding("0 - a"));
        EXPECT_TRUE(changed.refused && changed.problem == "Invalid file name");
        EXPECT_FALSE(banks_.read(name) || banks_.summary(name) || banks_.create(name) ||
                     banks_.remove(name) || banks_.rename(decomposed, name) ||
                     banks_.rename(name, "to.zephyra"));
        EXPECT_EQ(banks_.locate(name), fs::path());
    }
    for (const char* const name : {"..zephyra", "...zephyra", "\\xFF.zephyra", "\\x0A.zephyra"})
        EXPECT_TRUE(banks_.change(name, adding("0 - a")).refused && !banks_.create(name) &&
                    !banks_.rename(decomposed, name))
            << name;
    EXPECT_EQ(shared_.entries(), 2); // with the lock
}

TEST_F(BankFolderTest, BanksWhoseFilesHaveOddNamesAreListedAndCanDoAllButKeepThem) {
    const std::string longest(246, 'n'); // 255 bytes with what follows
    const std::pair<std::string, std::string> cases[] = {
        {longest + "\xff.zephyra", longest + "\\xFF.zephyra"},
        {"\\xFF.zephyra", "\\x5CxFF.zephyra"},
        {"line\nend.zephyra", "line\\x0Aend.zephyra"},
        {"..zephyra", "..zephyra"}};
    for (const auto& [file, name] : cases) {
        SCOPED_TRACE(name);
        writeText(folders_.resources / file, "no list\n");
        EXPECT_EQ(std::ranges::count(banks_.list(), ListedBank{name, kFactoryMarker}), 1);
        const std::string problem = banks_.read(name).message();
        EXPECT_EQ(problem.find_first_of("\n\xff"), std::string::npos) << problem;
        fs::remove(folders_.resources / file);
        // What was known of one that is gone is not lost.
        EXPECT_EQ(banks_.change(name, adding("0 - a"), std::make_shared<const Bank>()).problem, "");
        EXPECT_EQ(std::ranges::count(banks_.list(), ListedBank{name}), 1);
        EXPECT_EQ(banks_.locate(name), folders_.shared / file);
        EXPECT_EQ(banks_.change(name, adding("1 - b")).problem, "");
        EXPECT_FALSE(banks_.rename(name, name).value()); // taken
        EXPECT_TRUE(banks_.rename(name, "to.zephyra").value());
        EXPECT_THAT(keys("to.zephyra"), ElementsAre("0 - a", "1 - b"));
        EXPECT_TRUE(banks_.remove("to.zephyra").value());
    }
}

TEST_F(BankFolderTest, EveryBankThatIsMadeChangedOrRenamedMayBeBackedUp) {
    const CallsOf marks(FileCall::attribute);
    EXPECT_TRUE(banks_.change("a.zephyra", adding("0 - x")).applied);
    EXPECT_TRUE(banks_.create("b.zephyra").value());
    EXPECT_TRUE(banks_.rename("b.zephyra", "c.zephyra").value());
    EXPECT_EQ(marks.count(), 3);
}

TEST_F(BankFolderTest, ReadsAFileOnceUntilItChanges) {
    BankFolder other(folders_);
    for (const char digit : std::string("01234"))
        other.change(std::string(1, digit) + ".zephyra", adding("0 - a"));
    writeText(folders_.shared / "broken.zephyra", "no list");
    const CallsOf reads(FileCall::read);
    const auto readsOf = [&](const std::string& name) {
        const int before = reads.count();
        EXPECT_EQ(banks_.read(name + ".zephyra").ok(), name != "broken");
        return reads.count() - before;
    };
    EXPECT_TRUE(banks_.summary("0.zephyra") && banks_.summary("0.zephyra"));
    EXPECT_EQ(reads.count(), 1);
    // Only the summary of the first was kept, and in the end four others were used later.
    for (const char* const name : {"broken", "0", "1", "2", "3", "4", "0"}) {
        EXPECT_EQ(readsOf(name), 1) << name;
        EXPECT_EQ(readsOf(name), 0) << name;
    }
    const int before = reads.count();
    banks_.change("0.zephyra", adding("1 - b"));
    EXPECT_TRUE(readsOf("0") == 0 && reads.count() == before);
    other.change("0.zephyra", adding("2 - c"));
    EXPECT_EQ(readsOf("0"), 1);
    EXPECT_THAT(keys("0.zephyra"), ElementsAre("0 - a", "1 - b", "2 - c"));
    writeText(folders_.shared / "broken.zephyra", "<plist><dict/></plist>");
    EXPECT_TRUE(banks_.read("broken.zephyra"));
}

TEST_F(BankFolderTest, WhatIsNoBankStaysUntilTheUserAgreesToMoveItAside) {
    const std::string name = std::string(243, 'n') + "\xc3\xa4.zephyra"; // 253 bytes
    std::string deep;
    for (int i = 0; i < 40; ++i) deep = "<array>" + deep + "</array>";
    const std::string texts[] = {"", "no list", "<plist><array/></plist>",
                                 "<plist><dict><key>1 - x</key><true/></dict></plist>",
                                 "<plist><dict><key>a</key><dict><key>b</key>" + deep +
                                     "</dict></dict></plist>"};
    for (const std::string& text : texts) {
        writeText(folders_.shared / name, text);
        const auto refused = banks_.change(name, adding("0 - a"));
        EXPECT_TRUE(refused.refused && !refused.content && !refused.applied);
        EXPECT_THAT(refused.problem, HasSubstr(name));
        EXPECT_EQ(readText(folders_.shared / name), text);
        EXPECT_TRUE(std::ranges::count(banks_.list(), ListedBank{name}) == 1);
    }
    for (int count = 1; count <= 2; ++count) {
        writeText(folders_.shared / name, texts[3]);
        const auto moved =
            banks_.change(name, adding("0 - a"), nullptr, BankFolder::Unreadable::moveAside);
        EXPECT_FALSE(moved.refused);
        EXPECT_EQ(moved.problem, "");
        EXPECT_THAT(keys(name), ElementsAre("0 - a"));
        const std::string aside = std::string(count == 1 ? 243 : 242, 'n') +
                                  (count == 1 ? ".unreadable" : ".unreadable 2");
        EXPECT_EQ(readText(folders_.shared / aside), texts[3]);
    }
}

TEST_F(BankFolderTest, WhatCannotBeWrittenIsShownAndWrittenWithTheNextChange) {
    ASSERT_EQ(banks_.change(kName, adding("0 - a")).problem, "");
    const auto fail = [this](const std::string& name, const char* key) {
        const CallsOf noSpace(FileCall::write, ENOSPC);
        const auto changed = banks_.change(name, adding(key));
        EXPECT_TRUE(changed.applied && !changed.refused);
        EXPECT_THAT(changed.problem, HasSubstr(name));
        EXPECT_TRUE(changed.content->contains(key));
    };
    fail(kName, "1 - b");
    fail(kName, "2 - c");
    EXPECT_THAT(keys(kName), ElementsAre("0 - a", "1 - b", "2 - c"));
    EXPECT_EQ(banks_.summary(kName).value()->snapshots[2].tag, "Name");
    BankFolder(folders_).change(kName, adding("3 - other"));
    EXPECT_THAT(keys(kName), ElementsAre("0 - a", "1 - b", "2 - c", "3 - other"));

    EXPECT_TRUE(banks_.rename(kName, "New.zephyra").value());
    EXPECT_EQ(banks_.retry("New.zephyra").problem, "");
    EXPECT_EQ(readBank(folders_.shared / "New.zephyra").value().bank.size(), 4u);
    EXPECT_FALSE(banks_.hasUnwritten("New.zephyra"));

    fail("New.zephyra", "4 - gone");
    fs::remove(folders_.shared / "New.zephyra");
    EXPECT_EQ(banks_.change("New.zephyra", adding("5 - d")).problem, "");
    EXPECT_EQ(readBank(folders_.shared / "New.zephyra").value().bank.size(), 6u);

    fail("Fresh.zephyra", "0 - a");
    EXPECT_THAT(banks_.list().back(), (ListedBank{"New.zephyra"}));
    EXPECT_EQ(banks_.list().size(), 3u);
    EXPECT_FALSE(banks_.create("Fresh.zephyra").value());
    EXPECT_FALSE(banks_.rename("New.zephyra", "Fresh.zephyra").value());
    EXPECT_FALSE(banks_.rename("gone.zephyra", "c.zephyra").value());
    EXPECT_TRUE(banks_.remove("Fresh.zephyra").value());
    EXPECT_FALSE(banks_.remove("Fresh.zephyra").value());
    EXPECT_EQ(banks_.list().size(), 2u);
}

TEST_F(BankFolderTest, ALockThatStaysTakenIsNamedAndOneWhoStopsWaitingChangesNothing) {
    ASSERT_EQ(banks_.change(kName, adding("0 - a")).problem, "");
    FileLock other;
    ASSERT_FALSE(other.lock(folders_.shared / BankFolder::kLockName));
    banks_.setLockWait({.seconds = 0.01});
    const auto late = banks_.change(kName, adding("1 - b"));
    EXPECT_TRUE(late.applied);
    for (const std::string& problem :
         {late.problem, banks_.create("New.zephyra").message(), banks_.remove(kName).message(),
          banks_.rename(kName, "New.zephyra").message()})
        EXPECT_THAT(problem, HasSubstr((folders_.shared / BankFolder::kLockName).string()));
    banks_.setLockWait({.goesOn = [] { return false; }});
    const auto stopped = banks_.change(kName, adding("2 - c"));
    EXPECT_THAT(stopped.problem, HasSubstr("interrupted"));
    EXPECT_FALSE(stopped.applied);
    EXPECT_THAT(keys(kName), ElementsAre("0 - a", "1 - b"));
    other.unlock();
    EXPECT_EQ(banks_.change(kName, adding("3 - d")).problem, "");
    EXPECT_THAT(sortedKeys(readBank(folders_.shared / kName).value().bank),
                ElementsAre("0 - a", "1 - b", "3 - d"));
}

TEST_F(BankFolderTest, AnUnwrittenChangeOfAPresetThatAnotherProgramChangedIsGivenUpWithALine) {
    BankFolder other(folders_);
    ASSERT_EQ(banks_.change(kName, adding("0 - a")).problem, "");
    {
        const CallsOf noSpace(FileCall::write, ENOSPC);
        const auto seen = banks_.read(kName).value();
        EXPECT_TRUE(banks_.change(kName, renamingPreset(seen, "0 - a", "Mine")).applied);
    }
    const auto theirs = other.read(kName).value();
    EXPECT_TRUE(other.change(kName, renamingPreset(theirs, "0 - a", "Theirs")).applied);
    EXPECT_EQ(keys(kName).size(), 1u); // as it is looked at it is not given up yet
    EXPECT_THAT(banks_.retryAll(), ElementsAre(HasSubstr("\"Name\"")));
    EXPECT_FALSE(banks_.hasUnwritten(kName));
    EXPECT_EQ(snapshotTag(*banks_.read(kName).value(), "0 - a"), "Theirs");
}

TEST_F(BankFolderTest, WhatCouldNotBeReadAgainIsNotWrittenAndHindersNothing) {
    PropertyValue deep = PropertyArray{};
    for (int i = 0; i < 40; ++i) deep = PropertyArray{deep};
    const auto changed = banks_.change(kName, [&deep](Bank& bank) {
        return bank.emplace("1 - deep", PropertyDictionary{{"x", deep}}).second;
    });
    EXPECT_THAT(changed.problem, HasSubstr("1 - deep.x"));
    EXPECT_FALSE(changed.applied || banks_.isInSharedFolder(kName));
    EXPECT_EQ(banks_.change(kName, adding("2 - flat")).problem, "");
    EXPECT_THAT(keys(kName), ElementsAre("2 - flat"));
}

TEST_F(BankFolderTest, WithoutFoldersThereIsNothingAndNothingIsWritten) {
    banks_.change(kName, adding("0 - not meant"));
    const fs::path before = fs::current_path();
    fs::current_path(shared_.path());
    const Folders none;
    BankFolder banks(none);
    EXPECT_TRUE(banks.list().empty());
    EXPECT_EQ(banks.locate(kName), fs::path());
    EXPECT_NE(banks.change(kName, adding("1 - b")).problem, "");
    EXPECT_EQ(banks.read(kName).value()->size(), 1u);
    fs::current_path(before);
    EXPECT_THAT(keys(kName), ElementsAre("0 - not meant"));
}

TEST(OwnEdits, LeadFromWhatWasSeenStepByStepAndFromNothingElse) {
    OwnEdits own;
    own.add("k", 1, 2);
    own.add("k", 2, 3);
    own.add("j", 3, 4);
    EXPECT_TRUE(own.lead("k", 1, 2) && own.lead("k", 1, 3) && own.lead("k", 2, 3));
    EXPECT_FALSE(own.lead("k", 5, 3) || own.lead("k", 3, 4) || own.lead("k", 3, 1));
}

TEST(BankEdits, KeysStandInTheOrderOfTheirTextWithoutRegardToCase) {
    std::vector<std::string> keys = {
        snapshotKey(10, {"15.11.2026", "13:48:53"}), "2 - b", "a", "B", "1 - z", "A", "0.001 - x"};
    sortKeys(keys);
    EXPECT_THAT(keys, ElementsAre("0.001 - x", "1 - z", "10 - 15.11.2026 | 13:48:53", "2 - b", "A",
                                  "a", "B"));
}

TEST(BankEdits, RenumberingKeepsWhatFollowsTheNumber) {
    const Bank bank = {{"0 - day-one", named("a")}, {"plain", named("b")}, {"10 -x", named("c")},
                       {"4 - ", named("d")},        {"7 - z", named("e")}, {"5 - y", named("f")}};
    const Bank renumbered =
        renumberedBank(bank, {"10 -x", "gone", "plain", "0 - day-one", "plain", "4 - "});
    const Bank expected = {{"0.000 - x", named("c")},       {"0.001 - plain", named("b")},
                           {"0.002 - day-one", named("a")}, {"0.003 - ", named("d")},
                           {"0.004 - y", named("f")},       {"0.005 - z", named("e")}};
    EXPECT_EQ(sortedKeys(renumbered), sortedKeys(expected));
    EXPECT_TRUE(renumbered == expected);
}

} // namespace
} // namespace zephyra
