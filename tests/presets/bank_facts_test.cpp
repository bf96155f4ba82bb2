// What lists tell of banks and presets: what they play and need, and what a bank is for.

#include "presets/bank_facts.h"
#include "tests/library/bank_fixture.h"

namespace zephyra {
namespace {

const PropertyDictionary kSample{{"Sample_0", PropertyDictionary{{"Path", "/far/bell.wav"}}}};
const PropertyDictionary kOther{{"Sample_0", PropertyDictionary{{"RelativePath", "a/b.wav"}}}};
const PropertyDictionary kCaptured{{"Captured_0", PropertyDictionary{}}};
const PropertyDictionary kLive{{"LIVE_0", true}, {"Sample_0", PropertyDictionary{{"Path", "x"}}}};

PropertyDictionary linked(PropertyValue on) {
    const PropertyDictionary assignment{
        {"WrapperState", PropertyDictionary{{"LinkSwitch", std::move(on)}}}};
    return {{"ControlAssignments", PropertyArray{PropertyDictionary{}, assignment}}};
}

TEST(BankFacts, SayWhatPresetsPlayAndNeed) {
    const std::pair<std::vector<PropertyDictionary>, const char*> cases[] = {
        {{}, ""},
        {{{}}, "no sound"},
        {{kSample, kSample, {}}, "bell.wav"},
        {{kSample, kOther}, "2 sounds"},
        {{kLive}, "live input"},
        {{kLive, kSample}, "bell.wav, 1 with live input"},
        {{kLive, {}}, "no sound, 1 with live input"},
        {{kCaptured}, "a captured sound"},
        {{kCaptured, kCaptured, kSample}, "bell.wav, 2 captured sounds"},
        {{{{"ScanSync_0", true}}}, "no sound, follows the tempo"},
        {{{{"DelaySync_0", true}}, {}}, "no sound, 1 follows the tempo"},
        {{linked(true), {{"ScanSync_0", true}}}, "no sound, all follow the tempo"},
        {{linked(true), linked(true), linked(false), linked("on"), {{"ControlAssignments", 1}}},
         "no sound, 2 follow the tempo"}};
    for (const auto& [records, expected] : cases) {
        Bank bank;
        for (const PropertyDictionary& record : records)
            bank.emplace(std::to_string(bank.size()), record);
        EXPECT_EQ(needsText(bankFacts(bank)), expected);
    }
}

TEST(BankFacts, ABanksPurposeIsALineOfAFileBesideIt) {
    const TemporaryFolder folder;
    const auto purpose = [&](const std::string& text) {
        writeText(folder / "Drones.about", text);
        return bankPurpose(folder / "Drones.zephyra");
    };
    EXPECT_EQ(bankPurpose(folder / "Drones.zephyra"), "");
    EXPECT_EQ(purpose("hums\nand more") + purpose("a\tb"), "humsa?b");
    EXPECT_EQ(purpose(std::string(5000, 'x')), "") << "no line";
}

} // namespace
} // namespace zephyra
