// `--freeze`: from when on, and of what.

#include "tests/cli/program.h"

namespace zephyra {
namespace {

TEST_F(ProgramTest, FreezesFromTheTimeAskedForAndTakesNoFileForATime) {
    const std::string live = "--live ", heard = "--as effect --state heard.plist ";
    rendered("--seed 7 --live in.wav --save-state heard.plist");
    writeWav(folder / "long.wav", tone(22 * 8000), 8000);
    const std::pair<std::string, std::string> same[] = {
        {"--freeze in.wav", "in.wav --at 0:Freeze=on"},
        {"in.wav --freeze 0.1", "in.wav --at 0.1:Freeze=on"},
        {"in.wav --set Freeze=on --freeze=0.1", "in.wav --freeze 0.1"},
        {live + "--freeze in.wav", live + "in.wav --at 0.25:Freeze=on"}, // half of it
        {live + "--freeze 0.4 in.wav", live + "in.wav --at 0.4:Freeze=on"},
        {live + "--freeze long.wav", live + "long.wav --at 10:Freeze=on"},
        {heard + "--freeze in.wav", heard + "in.wav --at 0.25:Freeze=on"},
    };
    for (const auto& [frozen, asSetting] : same)
        EXPECT_TRUE(rendered("--seed 7 " + frozen) == rendered("--seed 7 " + asSetting)) << frozen;
    expectRefused("render in.wav --freeze 0.5", 2, "--freeze 0.5 comes after the grains' end");
    expectRefused("render in.wav --freeze=soon", 2, "--freeze takes seconds from 0 to 86400");
    // A state comes back as it was left, whatever INPUT has to say.
    rendered(live + "--freeze in.wav --save-state held.plist");
    writeWav(folder / "silence.wav", std::vector<std::int16_t>(22050));
    rendered("silence.wav --as effect --drywet 100 --freeze --state held.plist");
    EXPECT_GT(double{seen["rms"]}, 0.05);
}

} // namespace
} // namespace zephyra
