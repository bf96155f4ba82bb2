// What goes into a render, through files, pipes and standard input, and what is told of it.

#include "platform/sound/float_file_writer.h"
#include "tests/cli/program.h"
#include "tests/support/other_program.h"

#include <sys/stat.h>

namespace zephyra {
namespace {

/// Behind arguments: standard input is a pipe of this number instead, as a shell's <(...) is.
constexpr const char* kAsPipe = " 5<&0 </dev/null";

struct Input : ProgramTest {
    void SetUp() override {
        fs::create_directory(folder / "tmp");
        environment = "TMPDIR='" + (folder / "tmp").string() + "'";
    }
    void TearDown() override {
        EXPECT_TRUE(fs::is_empty(folder / "tmp")) << "what was kept has a name";
    }
    void makePipe(const char* name) const { ASSERT_EQ(::mkfifo((folder / name).c_str(), 0600), 0); }
    /// The bytes of a render whose files come through the shell's pipe.
    std::string piped(const std::string& shell, const std::string& arguments) {
        const ProgramRun ended = run("render -o out.wav --seed 7 --json " + arguments, shell);
        EXPECT_EQ(ended.code, 0) << shell << arguments << "\n" << ended.err;
        seen = json::parse(ended.out, nullptr, false);
        return readText(folder / "out.wav");
    }
};

TEST_F(Input, WhatComesThroughAPipeIsReadLikeAFileAlsoWithoutItsLength) {
    outputOf("cd '" + folder.path().string() +
             "'; for f in m4a mp3 ogg; do ffmpeg -v error -i in.wav x.$f; done");
    const std::string plain = rendered("in.wav --seed 7");
    for (const char* writer :
         {"sox in.wav -t wav -", "sox in.wav -t aiff -", "sox in.wav -t au -",
          "sox in.wav -t flac -", "ffmpeg -v quiet -i in.wav -f wav -",
          "ffmpeg -v quiet -i in.wav -f wav -rf64 always -", "ffmpeg -v quiet -i in.wav -f caf -",
          "ffmpeg -v quiet -i in.wav -sample_fmt s16 -f flac -",
          "{ head -c 30; sleep 0.3; cat; } < in.wav"})
        EXPECT_TRUE(piped(std::string(writer) + " |", "-") == plain) << writer;
    for (const std::string file : {"x.m4a", "x.mp3", "x.ogg"})
        EXPECT_TRUE(piped("cat " + file + " |", "-") == rendered(file + " --seed 7")) << file;
    EXPECT_TRUE(piped("cat in.wav |", "/dev/stdin") == plain);
    EXPECT_TRUE(piped("cat in.wav |", std::string("/dev/fd/5") + kAsPipe) == plain);
    makePipe("f");
    EXPECT_TRUE(piped("cat in.wav > f &", "f") == plain && piped("", "- < in.wav") == plain);
    EXPECT_EQ(run("info -", "cat in.wav |").out, run("info in.wav").out);
}

TEST_F(Input, EveryFileThatIsReadMayBeAPipe) {
    writeText(folder / "a.csv", "0.1,Density,300\n");
    writeText(folder / "take.csv", "0.2\n0.9\n");
    writeText(folder / "m.mid", std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0c\0\x90\x48\x40"
                                            "\x60\x80\x48\0\0\xff\x2f\0",
                                            34));
    writeWav(folder / "s.wav", tone(4000));
    ASSERT_EQ(run("render in.wav -o o.wav --set Pitch=5 --save-state s.state").code, 0);
    const std::pair<const char*, const char*> cases[] = {
        {"in.wav --automate ", "a.csv"},           {"in.wav --midi ", "m.mid"},
        {"in.wav --scrub ", "take.csv"},           {"in.wav --state ", "s.state"},
        {"in.wav --as effect --sample ", "s.wav"},
    };
    const std::string plain = rendered("in.wav --seed 7");
    for (const auto& [option, file] : cases) {
        SCOPED_TRACE(option);
        const std::string wanted = rendered(std::string(option) + file + " --seed 7");
        EXPECT_FALSE(wanted == plain);
        const std::string shell = std::string("cat ") + file + " |";
        EXPECT_TRUE(piped(shell, option + std::string("-")) == wanted);
        EXPECT_TRUE(piped(shell, option + std::string("/dev/fd/5") + kAsPipe) == wanted);
    }
    expectRefused("render in.wav --automate -", 1,
                  "--automate: standard input, line 1: ", "echo 1,Nothing,1 |");
    expectRefused("render in.wav --scrub -", 1, "--scrub: standard input holds more than 16 MiB",
                  "head -c 17000000 /dev/zero |");
}

TEST_F(Input, AStreamThatBringsNoSoundEndsInOneLine) {
    const std::string none = "is no sound file that is known here; a raw, wav";
    expectRefused("render -", 1, "standard input is empty; a raw, wav", ": |");
    expectRefused("info -", 1, "standard input " + none, "printf RIFF |");
    expectRefused("render -", 1, "standard input " + none, "yes |"); // which never ends
    expectRefused(std::string("render /dev/fd/5") + kAsPipe, 1, "/dev/fd/5 " + none, "yes |");
    expectRefused("render - <&-", 1, "standard input is closed");
    makePipe("f");
    expectRefused("render f", 1, "f is empty", ": > f &");
    expectRefused("render /dev/zero", 1, "/dev/zero is no regular file");
    expectRefused("render - --automate -", 2, "INPUT and --automate cannot both be standard input");
    for (const char* other : {"/dev/stdin", "/proc/self/fd/0", "/dev/fd/5 5<&0"})
        expectRefused("render - --out-dir d " + std::string(other), 2,
                      "INPUT and INPUT cannot both be", ": |");
    expectRefused("render in.wav in.wav --out-dir d --dry-run --automate -", 2,
                  "--dry-run: --automate standard input is read only once, but by several", ": |");
    const std::string typed =
        "script -qec 'cd " + folder.path().string() + "; " + ZEPHYRA_BINARY_DIR "/cli/zephyra ";
    for (const char* command : {"render -", "info /dev/stdin"})
        EXPECT_THAT(outputOf(typed + command + "; echo =$?' /dev/null </dev/null"),
                    AllOf(HasSubstr("is a terminal; send it something"), HasSubstr("=2")));
    environment = "TMPDIR=/none";
    expectRefused("render -", 1, "standard input cannot be kept in /none: ", "cat in.wav |");
}

TEST_F(Input, CtrlCEndsTheWaitForAPipe) {
    // Until it catches what kill sends, signal 15; a sanitizer catches others before.
    const std::string waits =
        "& for i in $(seq 500); do grep -q zephyra /proc/$!/comm && "
        "grep -q 'SigCgt:.*[4-7c-f]...$' /proc/$!/status && break; sleep 0.02; done; kill $!; "
        "wait $!";
    makePipe("f");
    for (const char* command : {"render f", "info f", "render in.wav --automate f",
                                "render f --out-dir d", "render in.wav f --out-dir d --quiet"})
        expectRefused(std::string(command) + waits, 130, "f was not read to its end: interrupted");
}

TEST_F(Input, ASoundWithoutAFileGoesAlongWithWhatIsSaved) {
    ASSERT_EQ(run("render -", "cat in.wav |").code, 0);
    ASSERT_EQ(run(std::string("render /dev/fd/5") + kAsPipe, "cat in.wav |").code, 0);
    EXPECT_TRUE(fs::exists(folder / "stdin-grains.wav") && fs::exists(folder / "pipe-grains.wav"));

    const std::string plain = rendered("in.wav --seed 7");
    const ProgramRun saved = run("render - -o o.wav --save-state s.state", "cat in.wav |");
    EXPECT_EQ(saved.err,
              "zephyra: s.state takes its sound along, which came from standard input\n");
    writeWav(folder / "other.wav", tone(30000));
    // The state's own sound is what an effect plays with LIVE off.
    const std::string fromState = "--as effect --drywet 100 --set LIVE=off --seed 7 ";
    EXPECT_TRUE(rendered("other.wav " + fromState + "--state s.state") ==
                rendered("other.wav " + fromState + "--sample in.wav"));

    const ProgramRun kept =
        run("render - -o o.wav --save-state t --save-bank B --save-preset P", "cat in.wav |");
    EXPECT_THAT(kept.err, HasSubstr("the preset's sound, stdin, is kept in "));
    EXPECT_THAT(kept.err, testing::Not(HasSubstr("along"))) << "the state names that file";
    EXPECT_TRUE(fs::exists(folder / "shared/stdin.wav"));
    EXPECT_TRUE(rendered("--bank B --preset P --seed 7") == plain);
}

TEST_F(Input, ABatchReadsAPipeOnceForAllOfItsRenders) {
    writeText(folder / "a.csv", "0.1,Density,300\n");
    const std::string wanted = rendered("in.wav --seed 7 --automate a.csv");
    const ProgramRun batch =
        run("render /dev/fd/6 in.wav --out-dir d --seed 7 --automate /dev/fd/5 5<a.pipe 6<&0",
            "mkfifo a.pipe; cat a.csv > a.pipe & cat in.wav |");
    EXPECT_EQ(batch.code, 0) << batch.err;
    EXPECT_TRUE(readText(folder / "d/pipe.wav") == wanted);
    EXPECT_TRUE(readText(folder / "d/in.wav") == wanted);
}

/// A sound of so many frames and channels, each of them of form(frame, channel).
template <typename Form>
void writeSound(const fs::path& file, std::size_t frames, std::uint32_t channels, Form form) {
    FloatFileWriter writer;
    ASSERT_TRUE(writer.open(file, 44100, channels));
    std::vector<std::vector<float>> samples(channels, std::vector<float>(frames));
    std::vector<float*> planes;
    for (std::uint32_t channel = 0; channel < channels; ++channel) {
        for (std::size_t n = 0; n < frames; ++n)
            samples[channel][n] = static_cast<float>(form(n, channel));
        planes.push_back(samples[channel].data());
    }
    ASSERT_TRUE(writer.write(planes.data(), static_cast<std::uint32_t>(frames)));
    ASSERT_TRUE(writer.close());
}

struct Notices : Input {
    Notices() {
        const auto sine = [](std::size_t n) {
            return 0.5 * std::sin(double(n % 50) * 0.125663706);
        };
        const auto write = [this](const char* name, std::uint32_t channels, auto form) {
            writeSound(folder / name, 22050, channels, form);
        };
        write("stereo.wav", 2, [&](std::size_t n, auto c) { return sine(n * (c + 1)); });
        write("one-sided.wav", 2, [&](std::size_t n, auto c) { return c == 0 ? sine(n) : 0; });
        write("inverted.wav", 2,
              [&](std::size_t n, auto c) { return c == 0 ? sine(n) : -sine(n); });
        write("nearly.wav", 2, [&](std::size_t n, auto c) { return sine(n) * (c == 0 ? 1 : -.8); });
        write("six.wav", 6, [&](std::size_t n, auto c) { return sine(n * (c + 1)); });
        write("offset.wav", 1, [&](std::size_t n, auto) { return 0.125 + sine(n); });
        write("less.wav", 1, [&](std::size_t n, auto) { return 0.02 + sine(n); });
        write("quiet.wav", 1, [&](std::size_t n, auto) { return 0.005 + 0.01 * sine(n); });
        write("right.wav", 2, [&](std::size_t n, auto c) { return sine(n) - 0.25 * c; });
        write("zero.wav", 1, [](std::size_t, auto) { return 0.0; });
        write("faint.wav", 2, [&](std::size_t n, auto) { return sine(n) * 6e-5; });
        write("late.wav", 1, [&](std::size_t n, auto) { return n < 11025 ? 0.0 : sine(n); });
    }
};

TEST_F(Notices, TellWhatAListenerWouldNoticeAndNothingElse) {
    const std::string mean = " has 2 channels; grains are cut from their mean",
                      silent = " is silent: nothing in it is louder than -90 dB",
                      length = " --set Length=50 --set RndLength=0 ";
    // Arguments of a render of 0.5 s, and how the lines begin.
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"in.wav", {}},
        {"in.wav --live", {}},
        {"in.wav --as effect --drywet 0", {}},
        {"stereo.wav", {"stereo.wav" + mean + "\n"}},
        {"stereo.wav --as effect --drywet 0", {}},
        {"in.wav --as effect --sample stereo.wav", {"stereo.wav" + mean + "\n"}},
        {"one-sided.wav", {"one-sided.wav" + mean + "\n"}},
        {"inverted.wav",
         {"inverted.wav" + mean + ", which is silent: they cancel each other; render one of them"}},
        {"nearly.wav", {"nearly.wav" + mean + ", in which they cancel each other by 16.1 dB;"}},
        {"six.wav", {"six.wav has 6 channels; grains are cut from their mean\n"}},
        {"six.wav --live",
         {"six.wav has 6 channels; the first two are heard, the others are left out"}},
        {"offset.wav",
         {"offset.wav has a DC offset of 12.50 % of full scale (-18.1 dB), which ",
          "out.wav has a DC offset of "}},
        {"less.wav", {}},
        {"right.wav --as effect --drywet 0",
         {"right.wav has a DC offset of -25.00 % of full scale (-12.0 dB), which ",
          "out.wav has a DC offset of -"}},
        {"zero.wav", {"zero.wav" + silent}},
        {"zero.wav --live", {"zero.wav" + silent}},
        {"zero.wav --as effect --sample in.wav", {}},
        {"faint.wav", {"faint.wav" + mean + "\n", "faint.wav" + silent}},
        {"in.wav --set Amplitude=0", {"out.wav is silent though in.wav is not: raise Amplitude"}},
        {"in.wav --transport stop",
         {"out.wav is silent though in.wav is not: the host's transport stands still"}},
        {"in.wav --start 0.5 --end 0.5", {"--start and --end are one place, "}},
        {"in.wav --start 0.5 --end 0.54" + length,
         {"--start and --end are 20 ms apart, less than a grain of 50 ms, "}},
        {"in.wav --start 0.9 --end 0.1", {}},
        {"in.wav --start 0.5 --end 0.5 --live",
         {"out.wav is silent though in.wav is not: check --start and --end"}},
        {"late.wav --end 0.4" + length,
         {"late.wav is silent from --start to --end: nothing there is louder than -90 dB",
          "out.wav is silent though late.wav is not: check --start and --end"}},
        {"late.wav --start 0.4 --end 0.6", {}},
        {"zero.wav --start 0.2 --end 0.8", {"zero.wav" + silent}},
        {"quiet.wav", {}},
        {"in.wav --float --set Density=400 --set Length=500", {"out.wav: 1"}},
    };
    for (const auto& [arguments, lines] : cases) {
        SCOPED_TRACE(arguments);
        const std::string all = "render -o out.wav --seconds 0.5 --seed 3 " + arguments;
        const ProgramRun told = run(all);
        std::vector<std::string> said; // without the program's name, and with line ends
        std::istringstream stream(told.err);
        for (std::string line; std::getline(stream, line);)
            said.push_back(line.substr(std::string("zephyra: ").size()) + "\n");
        ASSERT_EQ(said.size(), lines.size()) << told.err;
        const json listed = json::parse(run(all + " --json").out, nullptr, false)["notices"];
        for (std::size_t i = 0; i < lines.size(); ++i) {
            EXPECT_THAT(said[i], StartsWith(lines[i]));
            EXPECT_EQ(listed[i].get<std::string>() + "\n", said[i]);
        }
        EXPECT_EQ(std::count(told.out.begin(), told.out.end(), '\n'), 2) << told.out;
        EXPECT_EQ(run(all + " --quiet").err, "");
    }
    const ProgramRun batch = run("render zero.wav in.wav stereo.wav --seconds 0.1 --out-dir d");
    EXPECT_EQ(batch.err, "zephyra: zero.wav" + silent + "\nzephyra: stereo.wav" + mean + "\n");
}

TEST_F(Notices, TheOffsetOfEveryChannelIsTold) {
    EXPECT_THAT(run("info right.wav").out, HasSubstr("\ndc        0.00 %, -25.00 %\n"));
    const json info = json::parse(run("info right.wav --json").out, nullptr, false);
    EXPECT_NEAR(info["dc"][1].get<double>(), -0.25, 1e-4);
    rendered("offset.wav --seconds 0.5");
    EXPECT_EQ(seen["sourceChannels"], 1);
    EXPECT_NEAR(seen["sourceDc"][0].get<double>(), 0.125, 1e-4);
    EXPECT_GT(seen["dc"].get<double>(), 0.03);
}

} // namespace
} // namespace zephyra
