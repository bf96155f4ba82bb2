// Which bank and preset a typed name means.

#include "presets/preset_names.h"
#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

TEST(PresetNames, MeanABankOrPresetExactlyThenInAnyCaseThenByItsPlace) {
    const TemporaryFolder shared, factory;
    const auto put = [](const fs::path& file, const Bank& bank) {
        ASSERT_TRUE(writeBank(file, bank));
    };
    put(shared / "Clouds.zephyra", {});
    put(factory / "Drones.zephyra", {});
    put(shared / "Mist.zephyra", {{"0 - a", named("3")},
                                  {"1 - b", named("x")},
                                  {"2 - c", named("x")},
                                  {"3 - d", named("Über")}});
    put(shared / "mist.zephyra", {});
    put(shared / "m\xff.zephyra", {});
    const Folders folders{shared.path(), factory.path()};
    BankFolder banks(folders);
    const std::pair<const char*, const char*> bankNames[] = {{"Clouds", "Clouds.zephyra"},
                                                             {"clouds.ZEPHYRA", "Clouds.zephyra"},
                                                             {"DRONES", "Drones.zephyra"},
                                                             {"mist", "mist.zephyra"},
                                                             {"MIST", "2 banks"},
                                                             {"Cluods", "nearest is \"Clouds\""},
                                                             {"m\\xff", "m\\xFF.zephyra"},
                                                             {"m\xff", "m\\xFF.zephyra"},
                                                             {"m\xff.zephyra", "m\\xFF.zephyra"}};
    for (const auto& [typed, expected] : bankNames) {
        const auto found = findBank(banks, typed);
        EXPECT_THAT(found ? found.value() : found.message(), HasSubstr(expected)) << typed;
    }
    const std::pair<const char*, const char*> presetNames[] = {
        {"3", "0 - a"},         {"#3", "2 - c"},          {"2", "1 - b"},       {"2 - c", "2 - c"},
        {"ÜBER", "3 - d"},      {"x", "2 presets \"x\""}, {"X", ": 2, 3"},      {"5", "are 1 to 4"},
        {"0", "has no preset"}, {"ubr", "nearest"},       {"", "has no preset"}};
    for (const auto& [typed, expected] : presetNames) {
        const auto found = findPresets(banks, "Mist.zephyra", typed);
        EXPECT_THAT(found ? found.value().front() : found.message(), HasSubstr(expected)) << typed;
    }
    put(shared / "Odder.zephyra", {{"0 - a", named("über")}, {"1 - b", named("y")}});
    const std::pair<const char*, const char*> holders[] = {
        {"Y", "Odder.zephyra"}, {"über", "Odder.zephyra"}, {"3", "Mist.zephyra"},
        {"x", "Mist.zephyra"},  {"ÜBER", "\"Mist\" and"},  {"4", "a number needs --bank"},
        {"ubr", "the nearest"},
    };
    for (const auto& [typed, expected] : holders) {
        const auto found = findBankWith(banks, typed);
        EXPECT_THAT(found ? found.value() : found.message(), HasSubstr(expected)) << typed;
    }
    const Bank odd = {{"a", named("b")},  {"b", named("x")},   {"c", named("X")},
                      {"d", named("#2")}, {"e", named("a\n")}, {"f", named("*")},
                      {"g\n", named("x")}};
    put(shared / "Odd.zephyra", odd);
    const std::pair<const char*, const char*> words[] = {
        {"a", "b"}, {"b", "#02"}, {"c", "X"}, {"d", "#2"}, {"e", "e"}, {"f", "f"}, {"g\n", "#7"}};
    for (const auto& [key, word] : words) {
        EXPECT_EQ(presetWord(banks, "Odd.zephyra", key), word) << key;
        EXPECT_THAT(findPresets(banks, "Odd.zephyra", word).value(), ElementsAre(key));
    }
    put(shared / "One.zephyra", {{"0 - a", named("*")}}); // which is not all of it
    EXPECT_EQ(presetWord(banks, "One.zephyra", "0 - a"), "0 - a");
    const auto all = must(findPresets(banks, "Mist.zephyra", "*"));
    EXPECT_THAT(all, ElementsAre("0 - a", "1 - b", "2 - c", "3 - d"));
}

} // namespace
} // namespace zephyra
