// The presets that a host sees, and the states that it reads and writes.

#include "library/bank_file.h"
#include "tests/support/fake_host.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

PropertyDictionary tagged(const char* tag) {
    return {{"SnapshotTags", tag}};
}

struct PresetHost : FakeHost {
    PresetHost() {
        instance.folders.resources = folder.path();
        instance.log.setSink([this](std::string_view line) { (log += '|') += line; });
    }
    ~PresetHost() { instance.log.setSink({}); }
    std::string presets() {
        std::string text;
        for (const auto& [number, name] : unit->factoryPresets())
            text += std::to_string(number) + ' ' + name + ", ";
        return text;
    }
    /// What the controller got, what is current then, and what was logged.
    std::string set(const std::optional<AUAudioUnitPreset>& preset) {
        log.clear();
        controller.state = tagged("-");
        unit->setCurrentPreset(preset);
        const auto current = unit->currentPreset();
        return *controller.state["SnapshotTags"].as<std::string>() + '|' +
               (current ? current->name : "nil") + log;
    }
    TemporaryFolder folder;
    std::string log;
};

TEST(HostPresets, AreNumberedThroughAllFactoryBanksChosenByNumberAndRefusedWithALine) {
    PresetHost host;
    EXPECT_EQ(host.set({{0, "none"}}), "-|nil|Returning Current Custom Preset: 0, (null)");
    writeBank(host.folder / "B\xff.zephyra",
              {{"1 -", tagged("p")}, {"10 -", PropertyDictionary{}}});
    writeBank(host.folder / "A 1.zephyra",
              {{"b", tagged("2")}, {"A", tagged("1")}, {"c", tagged("3")}});
    writeBank(host.folder / "Other.ZEPHYRA", {{"x", tagged("x")}});
    writeText(host.folder / "Broken.zephyra", "<plist");
    host.unit->makeFactoryPresets();
    EXPECT_EQ(host.presets(),
              "0 1 (A 1), 1 2 (A 1), 2 3 (A 1), 3 p (B\\xFF), 4 <unnamed> (B\\xFF), ");
    EXPECT_NE(host.log.find("Broken.zephyra"), std::string::npos);
    const std::pair<std::optional<AUAudioUnitPreset>, const char*> rows[] = {
        {{}, "-|1 (A 1)|nil passed to setCurrentPreset!|Returning Current Factory Preset: 0"},
        {{{2, "my"}}, "3|3 (A 1)|currentPreset Factory: 2, my|Returning Current Factory Preset: 2"},
        {{{5, "none"}}, "-|3 (A 1)|Returning Current Factory Preset: 2"},
        {{{-3, ""}},
         "-|3 (A 1)|setCurrentPreset not set! - invalid AUAudioUnitPreset|"
         "Returning Current Factory Preset: 2"},
        {{{-3, "own"}},
         "-|own|currentPreset Custom: -3, own|Returning Current Custom Preset: -3, own"}};
    for (const auto& [preset, seen] : rows) EXPECT_EQ(host.set(preset), seen);
    host.set({{2, ""}});
    fs::remove(host.folder / "A 1.zephyra");
    host.unit->makeFactoryPresets();
    EXPECT_EQ(host.presets() + host.unit->currentPreset()->name,
              "0 p (B\\xFF), 1 <unnamed> (B\\xFF), p (B\\xFF)");
    // What a host writes is the controller's; what it reads is not.
    host.unit->setFullStateForDocument(tagged("whole"));
    EXPECT_EQ(host.unit->getFullState(), tagged("whole"));
    EXPECT_FALSE(host.unit->fullStateForDocument().contains("SnapshotTags"));
}

} // namespace
} // namespace zephyra
