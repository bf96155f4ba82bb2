// `zephyra render` from the outside: which file comes out, and when the same one does.

#include "tests/cli/program.h"
#include "tests/support/other_program.h"

namespace zephyra {
namespace {

struct Render : ProgramTest {
    ProgramRun render(const std::string& arguments) const {
        return run("render in.wav " + arguments);
    }
    /// The bytes of the file that a quiet render writes.
    std::string bytes(const std::string& arguments) const {
        const ProgramRun ended = render("--quiet -o bytes.wav " + arguments);
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(ended.out, "");
        EXPECT_THAT(ended.err, Not(HasSubstr("zephyra:"))); // a sanitizer may have its say
        return readText(folder / "bytes.wav");
    }
    json report(const std::string& arguments) {
        rendered("in.wav " + arguments);
        return seen;
    }
};

TEST_F(Render, WithoutASeedTheReportedOneRepeatsTheRender) {
    const std::string first = rendered("in.wav --envelope Random");
    EXPECT_EQ(bytes("--envelope Random --seed " + seen["seed"].dump()), first);
    EXPECT_NE(bytes("--envelope Random --seed 7"), bytes("--envelope Random --seed 9"));
    EXPECT_NE(bytes("--seed 7"), bytes("--seed 9")) << "the grains have it too";
}

TEST_F(Render, TheFileTypeFollowsTheExtensionUnlessATypeIsGiven) {
    // Arguments, file, its type and coding as libsndfile numbers them.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"-o plain", "plain", "0x00010002"},
        {"-o o.aif", "o.aif", "0x00020002"},
        {"-o o.aifc", "o.aifc", "0x00020012"},
        {"-o o.caf", "o.caf", "0x00180002"},
        {"-o o.au", "o.au", "0x00030002"},
        {"-o o.sd2", "o.sd2", "0x00160002"},
        {"-o o.dat --type au", "o.dat", "0x00030002"},
        {"--type caf", "in-grains.caf", "0x00180002"},
        {"-o f.wav --float", "f.wav", "0x00010006"},
        {"-o o.flac", "o.flac", "0x00170002"},
        {"-o o.oga", "o.oga", "0x00200060"},
    };
    for (const auto& [arguments, file, coding] : cases) {
        SCOPED_TRACE(arguments);
        ASSERT_EQ(render(arguments).code, 0);
        const std::string format = outputOf("sndfile-info '" + (folder / file).string() + "' 2>&1");
        EXPECT_THAT(format, HasSubstr(coding));
        EXPECT_THAT(format, HasSubstr("Channels    : 2"));
    }
    ASSERT_EQ(render("-o o.m4a").code, 0);
    EXPECT_THAT(outputOf("ffprobe -v error -show_streams " + (folder / "o.m4a").string()),
                HasSubstr("codec_name=aac"));
}

TEST_F(Render, OfTwoSettingsAtOneTimeTheLaterWins) {
    const std::string changed = bytes("--seed 3 --at 0.1:Amplitude=0.2");
    EXPECT_EQ(bytes("--seed 3 --at 0.1:Amplitude=1 --at 0.1:Amplitude=0.2 --at 0:Pan=0"), changed);
    EXPECT_NE(bytes("--seed 3"), changed);
}

TEST_F(Render, TheReportTellsWhatWasRendered) {
    rendered("in.wav --seconds 0.25 --rate 48000 --block 64 --seed 11");
    EXPECT_TRUE(seen["frames"] == 12000 && seen["sampleRate"] == 48000) << seen;
    EXPECT_TRUE(seen["seconds"] == 0.25 && seen["block"] == 64 && seen["seed"] == 11) << seen;
    EXPECT_TRUE(seen["output"] == "out.wav" && seen["grainsDropped"] == 0) << seen;
    EXPECT_NEAR(seen["grainsStarted"].get<int>(), 0.25 * 50, 4);
    EXPECT_GT(seen["speed"], 0);
    EXPECT_GT(seen["peak"], seen["rms"]);
    EXPECT_GT(seen["rms"], 0.01);
    EXPECT_GT(report("--set Density=400 --set Length=500")["grainsDropped"], 50);
    EXPECT_EQ(report("--set Amplitude=0")["peak"], 0);
}

TEST_F(Render, TheEchoAddsItsTailToTheSourcesLength) {
    EXPECT_EQ(report("")["frames"], 22050);
    const json tailed =
        report("--set EchoSwitch=on --set LeftGain=0 --set RightGain=0.1 --set "
               "LeftDelay=1 --set RightDelay=0.2 --set Length=100 --set RndLength=0");
    // The left delay's one repeat ends later than the right one's four; then the last grain's end.
    EXPECT_NEAR(tailed["frames"].get<double>(), 22050 + 44100 + 4410, 1);
    EXPECT_EQ(report("--set EchoSwitch=on --seconds 1")["frames"], 44100);
    // 0.9114 a repeat, the most that the LFO gives: 75 of them, 0.3 s apart, to fall by 60 dB.
    const json swept = report("--set EchoSwitch=on --lfo 'Left Gain:min=0.9,max=0.94'");
    EXPECT_NEAR(swept["seconds"].get<double>(), 0.5 + 75 * 0.3, 0.5);
    EXPECT_EQ(report("--set EchoSwitch=on --at 0.1:EchoSwitch=off")["frames"], 22050);
}

TEST_F(Render, AnExistingFileStaysUntilTheNewOneIsComplete) {
    writeText(folder / "out.wav", "precious");
    writeText(folder / "p.png", "precious too");
    const std::string render = "render in.wav -o out.wav ", fullDisk = "ulimit -f 64 &&";
    expectRefused(render + "--seconds 5 --picture p.png", 1, "out.wav", fullDisk);
    expectRefused(render + "--seconds 20 --gain auto", 1, "--gain auto keeps the whole sound in ",
                  fullDisk);
    // Asked to stop as soon as its half-written file can be seen.
    expectRefused(render + "--seconds 80000 --set Density=400 & for i in $(seq 500); do test -n "
                           "\"$(ls -d .zephyra-* 2>&-)\" && break; sleep 0.02; done; kill $!; "
                           "wait $!",
                  1, "interrupted; out.wav was not written");
    EXPECT_EQ(readText(folder / "out.wav") + readText(folder / "p.png"), "preciousprecious too");
}

TEST_F(Render, ExtremesOfEverySettingStillGiveAFileAndAPicture) {
    writeWav(folder / "one.wav", {12345});
    writeWav(folder / "low.wav", tone(500), 150); // a rate that nothing is written at
    const char* cases[] = {
        "one.wav",
        "low.wav",
        "in.wav --seconds 0.00001",
        "in.wav --block 65536 --live --set Scanning=4 --set Jittering=1000",
        "in.wav --start 0.9 --end 0.1 --set Scanning=-4",
        "in.wav --at 0:ScrubbingWave=1 --at 0.2:ScrubbingWave=0.5 --at 0.2:Scanning=0",
        "in.wav --rate 384000 --set RingModulationSwitch=on --set RingModulationFrequency=8000",
    };
    for (const char* arguments : cases) {
        SCOPED_TRACE(arguments);
        rendered(std::string(arguments) + " --picture o.png");
        EXPECT_THAT(outputOf("sndfile-info " + (folder / "out.wav").string()),
                    HasSubstr("Channels    : 2"));
        EXPECT_EQ(readText(folder / "o.png").substr(1, 3), "PNG");
        fs::remove(folder / "out.wav");
        fs::remove(folder / "o.png");
    }
}

TEST_F(Render, EveryEnvelopeAndEveryParameterOfAHostIsListed) {
    const std::string menu = run("envelopes").out;
    EXPECT_EQ(std::count(menu.begin(), menu.end(), '\n'), 12);
    const json table = json::parse(run("parameters --json").out, nullptr, false);
    ASSERT_EQ(table.size(), 24u);
    EXPECT_EQ(table[5]["identifier"], "Density_0");
}

TEST_F(Render, InfoTellsFormatLengthPeakAndLoudness) {
    seen = json::parse(run("info in.wav --json").out, nullptr, false);
    EXPECT_TRUE(seen["channels"] == 1 && seen["sampleRate"] == 44100) << seen;
    EXPECT_EQ(seen["frames"], 22050);
    EXPECT_NEAR(seen["peakDecibels"].get<double>(), -6.02, 0.01);
    // A sine's mean power, K-weighted.
    EXPECT_NEAR(seen["loudnessLufs"].get<double>(), -6.02 - 3.7, 0.5);
    EXPECT_THAT(run("info in.wav").out, HasSubstr("0.50 s (22050 frames)"));
    writeWav(folder / "zero.wav", std::vector<std::int16_t>(100));
    EXPECT_THAT(run("info zero.wav").out, HasSubstr("peak      silent"));
}

} // namespace
} // namespace zephyra
