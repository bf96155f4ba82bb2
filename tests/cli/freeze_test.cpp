// `--freeze`: from when on, and of what.

#include "tests/cli/program.h"

namespace zephyra {
namespace {

struct FrozenRender : ProgramTest {};

TEST_F(FrozenRender, BeginsWhereItIsAskedToAndTakesNoFileForATime) {
    const std::string seed = "--seed 7 ", live = seed + "--live ";
    const std::string heard = seed + "--as effect --state heard.plist ";
    rendered(live + "in.wav --save-state heard.plist");
    writeWav(folder / "long.wav", tone(22 * 8000), 8000);
    const std::pair<std::string, std::string> same[] = {
        {seed + "--freeze in.wav", seed + "in.wav --at 0:Freeze=on"},
        {seed + "in.wav --freeze 0.1", seed + "in.wav --at 0.1:Freeze=on"},
        {seed + "in.wav --set Freeze=on --freeze 0.1", seed + "in.wav --freeze 0.1"},
        {live + "--freeze in.wav", live + "in.wav --at 0.25:Freeze=on"}, // half of it
        {live + "--freeze 0.4 in.wav", live + "in.wav --at 0.4:Freeze=on"},
        {live + "--freeze long.wav", live + "long.wav --at 10:Freeze=on"},
        {heard + "--freeze in.wav", heard + "in.wav --at 0.25:Freeze=on"},
    };
    for (const auto& [frozen, asSetting] : same) {
        EXPECT_TRUE(rendered(frozen) == rendered(asSetting)) << frozen;
        EXPECT_TRUE(rendered(frozen) != rendered(seed + "in.wav")) << frozen;
    }
    EXPECT_TRUE(rendered(live + "--freeze=0.3 in.wav") != rendered(live + "in.wav"));
    expectRefused("render in.wav --freeze 0.5", 2, "--freeze 0.5 comes after the grains' end");
    expectRefused("render in.wav --freeze=soon", 2, "--freeze takes seconds from 0 to 86400");
}

TEST_F(FrozenRender, SavesTheSoundThatIsHeldAndHoldsItAgain) {
    rendered("in.wav --seed 7 --live --freeze --save-state held.plist");
    writeWav(folder / "silence.wav", std::vector<std::int16_t>(22050));
    rendered("silence.wav --seed 7 --as effect --drywet 100 --freeze --state held.plist");
    EXPECT_GT(double{seen["rms"]}, 0.05);
}

} // namespace
} // namespace zephyra
