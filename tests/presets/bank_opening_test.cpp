// A bank's file that somebody opens, beside banks of that name.

#include "presets/bank_opening.h"

#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

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
