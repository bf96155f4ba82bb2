#include "tests/library/bank_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zephyra {
namespace {

using ::testing::ElementsAre;

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

TEST(BankEdits, OnlyATextOfTheGivenKeyIsADisplayName) {
    const Bank bank = {{"a", named("Pads")},
                       {"b", PropertyDictionary{{kSnapshotTags, 3}}},
                       {"c", PropertyDictionary{}},
                       {"d", "Text"}};
    EXPECT_EQ(snapshotTag(bank, "a"), "Pads");
    for (const char* const key : {"b", "c", "d", "e"})
        EXPECT_EQ(snapshotTag(bank, key), std::nullopt);
    EXPECT_TRUE(hasSnapshotNamed(bank, "Pads"));
    EXPECT_FALSE(hasSnapshotNamed(bank, "pads"));
    EXPECT_EQ(recordOf(bank, "d"), nullptr);
}

} // namespace
} // namespace zephyra
