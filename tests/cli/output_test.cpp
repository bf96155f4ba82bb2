// What `zephyra render` writes: how it ends, how loud it is, and into what.

#include "tests/cli/program.h"
#include "tests/support/other_program.h"

#include <sys/stat.h>

namespace zephyra {
namespace {

const std::string kLoud = "--set Amplitude=1 --set Density=400 --set Length=50 --seed 1 ";

struct Output : ProgramTest {
    /// Renders to standard output, a pipe that reader reads from.
    ProgramRun piped(const std::string& arguments, const std::string& reader) const {
        ProgramRun ended =
            run("render in.wav --seed 1 -o - " + arguments + " >&3; echo $? >code; } | " + reader,
                "{ 3>&1");
        ended.code = std::atoi(readText(folder / "code").c_str());
        fs::remove(folder / "code");
        return ended;
    }
};

std::vector<std::int16_t> shortsOf(const std::string& wav) {
    std::vector<std::int16_t> samples((wav.size() - 44) / 2);
    std::memcpy(samples.data(), wav.data() + 44, samples.size() * 2);
    return samples;
}

TEST_F(Output, EveryRenderEndsInSilenceUnlessItIsCut) {
    const auto faded = shortsOf(rendered("in.wav --seed 5")),
               cut = shortsOf(rendered("in.wav --seed 5 --cut"));
    EXPECT_TRUE(faded.back() == 0 && std::abs(cut.back()) > 655 && seen["cut"] == true);
    ASSERT_EQ(faded.size(), cut.size());
    EXPECT_TRUE(std::equal(faded.begin(), faded.end() - 882, cut.begin()));
    run("render in.wav in.wav --seed 5 --out-dir many --quiet");
    EXPECT_EQ(shortsOf(readText(folder / "many" / "in 2.wav")).back(), 0);
    EXPECT_TRUE(readText(folder / "many" / "in.wav") == rendered("in.wav --seed 5"));
}

TEST_F(Output, GrainsAndEchoRingOutAfterTheEnd) {
    const std::string render = "in.wav --seed 5 --seconds 0.2 --cut --set Length=500";
    const auto ends = shortsOf(rendered(render));
    std::size_t longest = ends.size();
    for (const char* echo : {"", " --set \"Echo Switch=on\""}) {
        const auto rings = shortsOf(rendered(render + echo + " --ring-out"));
        EXPECT_GT(rings.size(), longest);
        longest = rings.size();
        if (*echo) continue;
        EXPECT_TRUE(std::equal(ends.begin(), ends.end(), rings.begin()));
        const auto loud = [&](auto from, auto to) {
            return std::any_of(from, to, [](int sample) { return std::abs(sample) > 327; });
        };
        const auto end = rings.begin() + static_cast<std::ptrdiff_t>(ends.size());
        EXPECT_TRUE(loud(end, end + 2000));
        EXPECT_FALSE(loud(rings.end() - 200, rings.end()));
    }
}

TEST_F(Output, WhatGoesThroughAPipeIsTheFile) {
    for (const char* arguments :
         {"", "--float", "--raw", "--type aiff", "--type caf", "--type m4a", "--format flac",
          "--format ogg", "--gain auto --set Amplitude=1"}) {
        SCOPED_TRACE(arguments);
        ASSERT_EQ(run(std::string("render in.wav --seed 1 -o named ") + arguments).code, 0);
        const ProgramRun ended = piped(std::string("--json ") + arguments, "cat >piped");
        EXPECT_EQ(ended.code, 0) << ended.err;
        EXPECT_EQ(json::parse(ended.err, nullptr, false)["output"], "-") << ended.err;
        EXPECT_TRUE(readText(folder / "piped") == readText(folder / "named")) << ended.err;
    }
    const std::string named = rendered("in.wav --seed 1");
    ::mkfifo((folder / "fifo").c_str(), 0600);
    for (const char* into : {"/dev/stdout >other", "/dev/fd/5 5>other", "fifo & cat fifo >other"}) {
        const ProgramRun ended = run(std::string("render in.wav --seed 1 --quiet -o ") + into);
        EXPECT_TRUE(readText(folder / "other") == named) << into << ended.err;
    }
    EXPECT_TRUE(fs::is_fifo(folder / "fifo"));
    EXPECT_EQ(run("render in.wav --seed 1 --quiet --raw").code, 0);
    EXPECT_EQ(
        outputOf("sox -r 44100 -c 2 " + quoted(folder / "in-grains.f32") + " -t s16 - | wc -c"),
        "88200\n");
}

TEST_F(Output, WhatCannotTakeSoundIsRefusedOrEndsInOneLine) {
    const auto before = folder.entries();
    for (const char* type : {"wav", "ogg"}) {
        environment = "TMPDIR='" + folder.path().string() + "'";
        const ProgramRun closed =
            piped(std::string("--seconds 20 --type ") + type, "head -c 100 >/dev/null");
        EXPECT_EQ(closed.code, 1);
        EXPECT_EQ(closed.err, "zephyra: nobody reads from standard output any more; only a part "
                              "of the sound was written\n");
        EXPECT_EQ(folder.entries(), before);
    }
    // Whoever reads is told nothing of a sound that cannot come.
    environment = "TMPDIR=/none";
    const std::pair<const char*, const char*> refused[] = {
        {"--gain auto", "--gain auto keeps the whole sound in /none until"},
        {"--type ogg", "cannot write standard output by way of /none: the folder does not"},
        {"--save-state /none/s", "/none/s: the state cannot be written"},
    };
    for (const auto& [arguments, said] : refused) {
        const ProgramRun ended = piped(arguments, "cat >read");
        EXPECT_EQ(ended.code, 1) << arguments;
        EXPECT_THAT(ended.err, HasSubstr(said));
        EXPECT_EQ(readText(folder / "read"), "") << arguments;
    }
    std::filesystem::remove(folder / "read");
    environment = "";
    EXPECT_THAT(piped("--type flac --rate 99999 --seconds 0.1", "cat").err,
                HasSubstr("standard output by way of /var/tmp: FLAC holds rates"));
    EXPECT_THAT(piped("--set Amplitude=0", "cat >/dev/null").err,
                HasSubstr("zephyra: standard output is silent though"));
    // No file that is opened later takes the number of a closed stream.
    expectRefused("render - -o - >&-", 1, "cannot write standard output", "cat in.wav |");
    ::mkfifo((folder / "fifo").c_str(), 0600);
    expectRefused("render fifo -o fifo", 2, "OUT and INPUT cannot both be the pipe fifo");
    std::filesystem::remove(folder / "fifo");
    const std::string terminal =
        outputOf("cd " + quoted(folder.path()) +
                 "; script -qec \"'" ZEPHYRA_BINARY_DIR
                 "/cli/zephyra' render in.wav -o -; echo \\$?\" /dev/null </dev/null");
    EXPECT_THAT(terminal, HasSubstr("standard output is a terminal"));
    EXPECT_THAT(terminal, HasSubstr("\n2"));
    EXPECT_EQ(folder.entries(), before);
}

TEST_F(Output, ALoudRenderIsToldAndTurnedDown) {
    const std::string loud = "render in.wav " + kLoud;
    const ProgramRun clipped = run(loud + "-o o.wav --json");
    seen = json::parse(clipped.out, nullptr, false);
    const double excess = seen["clippedDecibels"];
    EXPECT_NEAR(excess, 20 * std::log10(seen["peak"].get<double>()), 1e-6);
    char told[200];
    std::snprintf(told, sizeof told,
                  "zephyra: o.wav: %d samples exceeded full scale by up to %.1f dB and were "
                  "limited; turn down with --gain auto, lower Amplitude, or write --float\n",
                  seen["limitedSamples"].get<int>(), std::ceil(excess * 10) / 10);
    EXPECT_EQ(clipped.err, told);
    for (const char* silent : {"--quiet", "--float"})
        EXPECT_EQ(run(loud + "-o o.wav " + silent).err, "") << silent;

    const ProgramRun turned = run(loud + "-o o.wav --gain auto --picture o.png --save-state s");
    EXPECT_EQ(turned.err, "");
    std::snprintf(told, sizeof told, "peak -0.1 dB, rms %%.1f dB, turned down by %.1f dB\n",
                  excess + 0.1);
    EXPECT_THAT(turned.out, HasSubstr(std::string(told).substr(0, 13)));
    EXPECT_THAT(turned.out, HasSubstr(std::string(told).substr(28)));
    run(loud + "-o plain.wav --save-state plain");
    EXPECT_TRUE(readText(folder / "s") == readText(folder / "plain"));
    rendered("in.wav " + kLoud + "--gain auto");
    EXPECT_NEAR(seen["gainDecibels"].get<double>(), -excess - 0.1, 1e-6);
    EXPECT_FALSE(seen.contains("clippedDecibels"));
    rendered("in.wav --seed 1 --gain auto");
    EXPECT_EQ(seen["gainDecibels"], 0) << "never up";
    const double peak = seen["peak"];
    rendered("in.wav --seed 1 --gain '-6 dB'");
    EXPECT_NEAR(seen["peak"].get<double>(), peak * 0.501187, 1e-6);
}

} // namespace
} // namespace zephyra
