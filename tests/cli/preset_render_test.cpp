// `zephyra render` from presets and into them.

#include "tests/cli/program.h"

namespace zephyra {
namespace {

struct PresetRender : ProgramTest {
    PresetRender() {
        writeWav(folder / "other.wav", std::vector<std::int16_t>(11025, 9000), 22050);
    }

    std::string bytes(const std::string& arguments) { return rendered("--seed 7 " + arguments); }
    const std::string moving = "--set Density=90 --set 'Rnd Pitch=5' --envelope Sync --start 0.25 "
                               "--set 'Left Delay=0.1' --lfo Pan:hz=3 --scrub take.csv ";
};

TEST_F(PresetRender, APresetSoundsAsTheOptionsThatItWasSavedFrom) {
    writeText(folder / "take.csv", "0.1\n0.9\n0.4\n");
    const std::string made = bytes("in.wav --save-bank Mine --save-preset 'Night Train' " + moving);
    EXPECT_EQ(seen["savedPreset"], "Night Train");
    EXPECT_TRUE(bytes("in.wav") != made);
    for (const char* const named : {"--bank mine --preset 'night train'", "--preset 'night train'"})
        EXPECT_TRUE(bytes(named) == made) << named;
    EXPECT_EQ(seen["takePoints"], 3);
    EXPECT_EQ(seen["sample"], (folder / "in.wav").string());
    EXPECT_TRUE(bytes("--bank Mine --preset 1 --set Density=20") != made);
    // What was saved from a preset is that preset.
    EXPECT_TRUE(bytes("--bank Mine --preset 1 --save-bank Mine --save-preset Again") == made);
    EXPECT_TRUE(bytes("--bank Mine --preset Again") == made);
    const std::string other = bytes("other.wav " + moving);
    EXPECT_TRUE(bytes("other.wav --bank Mine --preset Again") == other) << "INPUT wins";
    fs::remove(folder / "in.wav");
    EXPECT_TRUE(bytes("other.wav --bank Mine --preset Again") == other);
    expectRefused("render --bank Mine --preset Again", 1,
                  "/in.wav is missing; a file of that name, or one with its content in the shared "
                  "folder, is needed; name INPUT instead");
}

TEST_F(PresetRender, APresetThatListensIsAnEffectWithoutBeingTold) {
    const std::string effect = bytes("in.wav --as effect --set Density=50 --save-bank Live "
                                     "--save-preset Ears --drywet 80");
    EXPECT_TRUE(bytes("in.wav --bank Live --preset Ears") == effect);
    EXPECT_TRUE(seen["as"] == "effect" && seen["live"] == true) << seen;
    EXPECT_THAT(run("render in.wav --bank Live --preset Ears").out, HasSubstr("has LIVE on"));
    for (const std::string told : {"--live ", "--as instrument "})
        EXPECT_THAT(run("render in.wav --bank Live --preset Ears " + told).out,
                    Not(HasSubstr("has LIVE on")));
    expectRefused("render --bank Live --preset Ears", 2, "listens to live input; name INPUT");
    bytes("in.wav --bank Live --preset Ears --as instrument");
    EXPECT_FALSE(seen["live"]);
}

TEST_F(PresetRender, AnEffectKeepsThePresetsSampleAndHearsTheInput) {
    const std::string set = "in.wav --as effect --set Density=50 ";
    const std::string sampled =
        bytes(set + "--sample other.wav --save-bank B --save-preset Sampled");
    EXPECT_TRUE(bytes("in.wav --as effect --bank B --preset Sampled") == sampled);
    EXPECT_TRUE(bytes("in.wav --live --bank B --preset Sampled") != sampled && seen["live"]);
}

TEST_F(PresetRender, APresetIsOverwrittenOnlyWithYesAndNeverByAFailedRender) {
    const std::string save = "in.wav --save-bank B --save-preset P ";
    bytes(save + "--set Density=90");
    const std::string bank = readText(folder / "shared/B.zephyra");
    expectRefused("render " + save, 2, "B has a preset \"P\" already");
    expectRefused("render " + save + "--yes -o none/x.wav", 1, "none/x.wav");
    EXPECT_TRUE(readText(folder / "shared/B.zephyra") == bank);
    const std::string plain = bytes(save + "--yes");
    EXPECT_TRUE(bytes("--bank B --preset 1") == plain);
    expectRefused("render --bank B --preset P --save-state shared/B.zephyra", 2,
                  "would replace --bank");
    writeText(folder / "shared/broken.zephyra", "<plist><dict><key>");
    expectRefused("render in.wav --save-bank broken --save-preset P", 2, "broken.zephyra");
}

} // namespace
} // namespace zephyra
