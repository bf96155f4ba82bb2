// What a bank becomes when presets, or a whole one, come from somewhere else.

#include "presets/preset_adding.h"

#include "presets/bank_opening.h"
#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

const DateAndTime kNow{"15.11.2026", "13:48:53"};

struct PresetAdding : BankFixture {
    std::vector<std::string> add(const std::vector<PropertyDictionary>& records) {
        return addPresets(banks_, "B.zephyra", records, kNow).value();
    }
    BankFolder banks_{folders_};
};

TEST_F(PresetAdding, ANameThatIsTakenGetsTheFirstFreeNumberBehindABlank) {
    EXPECT_THAT(add({named("Haze 2"), named("Haze 2"), named("Haze 2 3"), named("Haze 2")}),
                ElementsAre("Haze 2", "Haze 2 2", "Haze 2 3", "Haze 2 4"));
    EXPECT_THAT(add({named("Haze"), named("Haze"), named("Haze"), named("Haze 2 2")}),
                ElementsAre("Haze", "Haze 3", "Haze 4", "Haze 2 2 2"));
    EXPECT_THAT(add({PropertyDictionary{}, named(kUnnamed), named(kUnnamed)}),
                ElementsAre(kUnnamed, kUnnamed, kUnnamed));
}

TEST_F(PresetAdding, AKeyThatIsTakenStaysAndAFreeOneIsTaken) {
    const auto key = [](std::size_t count) { return snapshotKey(count, kNow); };
    banks_.change("B.zephyra", [&](Bank& bank) {
        for (const std::size_t count : {3, 4, 6}) bank.emplace(key(count), named("Old"));
        return true;
    });
    for (int i = 0; i < 2; ++i) add({named("New")});
    EXPECT_THAT(sortedKeys(*banks_.read("B.zephyra").value()),
                ElementsAre(key(3), key(4), key(5), key(6), key(7)));
}

TEST_F(PresetAdding, ThousandsOfOneNameAndOfTakenKeysAreAddedInOneGo) {
    constexpr std::size_t count = 20'000;
    const auto start = std::chrono::steady_clock::now();
    banks_.change("B.zephyra", [](Bank& bank) {
        for (std::size_t i = 0; i < count; ++i)
            bank.emplace(snapshotKey(count + i, kNow), named("Haze"));
        return true;
    });
    EXPECT_EQ(add(std::vector(count, named("Haze"))).back(), "Haze 20001");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

TEST_F(PresetAdding, ABankThatIsThereIsKeptUnlessItIsToBeReplaced) {
    for (const bool isFirst : {true, false})
        EXPECT_EQ(addWholeBank(banks_, "B.zephyra", std::make_shared<const Bank>(), IfTaken::refuse)
                      .value(),
                  isFirst);
    const Bank other = {{"0 - a", named("A")}};
    addWholeBank(banks_, "B.zephyra", std::make_shared<const Bank>(other), IfTaken::replace);
    EXPECT_TRUE(*banks_.read("B.zephyra").value() == other);
}

TEST_F(BankFixture, AnOpenedBankJoinsTheOthersAndReplacesNone) {
    BankFolder banks(folders_);
    const TemporaryFolder elsewhere;
    const fs::path file = elsewhere / "Haze.zephyra";
    const auto open = [&](const char* preset) {
        EXPECT_TRUE(writeBank(file, {{"1 - b", named(preset)}, {"0 - a", named("First")}}));
        return must(openBank(banks, file));
    };
    EXPECT_EQ(open("One").bank, "Haze.zephyra");
    EXPECT_EQ(open("Two").bank, "Haze 2.zephyra");
    EXPECT_EQ(open("One").bank, "Haze.zephyra"); // is there already
    EXPECT_EQ(open("Two").firstPreset, "0 - a");
    EXPECT_EQ(banks.list().size(), 2u);
    std::ofstream(file) << "no bank";
    EXPECT_THAT(failureOf(openBank(banks, file)), HasSubstr("Haze.zephyra"));
}

} // namespace
} // namespace zephyra
