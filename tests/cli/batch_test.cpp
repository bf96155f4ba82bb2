// Many renders at a time: their processes, progress and names, and what becomes of those that fail.

#include "cli/batch/batch_names.h"
#include "cli/batch/process_pool.h"
#include "cli/terminal/interrupt.h"
#include "cli/terminal/progress_bar.h"
#include "platform/files/folder_entries.h"
#include "tests/cli/program.h"

#include <csignal>
#include <unistd.h>

namespace zephyra {
namespace {

TEST(ProcessPool, AJobThatDiesOrFailsLeavesTheOthersAlone) {
    std::map<std::size_t, std::string> ends;
    double share = 0;
    const std::string longText(300000, 'x'); // more than a pipe holds
    const bool all = runJobs(
        6, 2,
        [&](std::size_t job, JobLine& line) {
            line.share(0.5);
            if (job == 1) std::raise(SIGKILL);
            line.say('t', job == 2 ? longText : std::to_string(job));
            return job == 3 ? 9 : 0;
        },
        {.said = [&](std::size_t job, char kind,
                     const std::string& text) { ends[job].append(1, kind).append(text); },
         .progressed = [&](double done) { share = done; },
         .ended =
             [&](std::size_t job, const JobEnd& end) {
                 ends[job].append("=").append(std::to_string(end.code));
             }},
        [] { return false; });
    EXPECT_TRUE(all);
    EXPECT_EQ(std::tuple(share, ends[2].size()), std::tuple(1.0, longText.size() + 3));
    ends.erase(2);
    EXPECT_EQ(ends, (std::map<std::size_t, std::string>{
                        {0, "t0=0"}, {1, "=-1"}, {3, "t3=9"}, {4, "t4=0"}, {5, "t5=0"}}));
}

/// In a child: waits, but not for ever, until it is asked to end; whether it was.
bool isAskedToEnd() {
    for (int wait = 0; wait < 2000 && !interrupted(); ++wait) ::usleep(10000);
    return interrupted();
}

TEST(ProcessPool, ChildrenEndWhenTheParentSaysSoOrDiesAndNotByCtrlC) {
    std::map<std::size_t, int> codes;
    std::size_t begun = 0;
    const bool all = runJobs(
        4, 2,
        [](std::size_t job, JobLine& line) {
            for (int twice = 0; twice < 2; ++twice) std::raise(SIGINT); // as a terminal sends it
            if (interrupted()) return 1;
            line.say('b', "");
            if (job == 0) return isAskedToEnd() ? 7 : 2;
            for (int wait = 0; wait < 2000; ++wait) ::usleep(10000); // it hangs
            return 3;
        },
        {.said = [&](auto, auto, auto&) { ++begun; },
         .progressed = {},
         .ended = [&](std::size_t job, const JobEnd& end) { codes[job] = end.code; }},
        [&] { return begun == 2; });
    EXPECT_FALSE(all);
    EXPECT_EQ(codes, (std::map<std::size_t, int>{{0, 7}, {1, -1}}));

    TemporaryFolder folder;
    int times = 1, signal = SIGKILL; // of which the parent dies
    const auto kill = [&](auto, auto&) {
        for (; times > 0; --times) {
            ::kill(::getppid(), signal);
            if (isAskedToEnd()) writeText(folder / "asked", "");
        }
        return 0;
    };
    EXPECT_EXIT(runJobs(1, 1, kill, {}, interrupted), testing::KilledBySignal(SIGKILL), "");
    EXPECT_TRUE(fs::exists(folder / "asked")); // that ended only when the child had
    times = 2, signal = SIGINT;
    EXPECT_EXIT((watchInterrupts(), runJobs(1, 1, kill, {}, interrupted)),
                testing::KilledBySignal(SIGINT), "");
}

TEST(ProgressBar, ShowsShareAndTimeLeftOnceThereIsSomethingToJudgeBy) {
    EXPECT_EQ(progressLine("Work", 0.25, 10.0),
              "Work [########........................]  25 %  0:30 left");
    EXPECT_EQ(progressLine("Work", 0, 1), "Work [................................]   0 %");
    EXPECT_EQ(progressLine("Work", 2, 1),
              "Work [################################] 100 %  0:00 left");
}

TEST(BatchNames, AreFileNamesOfWhichNoTwoAreAlike) {
    BatchNames names;
    names.reserve("contact-sheet");
    const std::string longName(300, 'n');
    const std::tuple<std::optional<std::string>, std::optional<std::string>, std::string> cases[] =
        {
            {"in", "Glass", "in - Glass"},
            {{}, "Glass", "Glass"},
            {{}, "glass", "glass 2"}, // a disk may not tell them apart
            {"Glass", {}, "Glass 3"},
            {{}, "Haze 2", "Haze 2"},
            {{}, "Haze 2", "Haze 2 2"}, // its own digit is no number behind it
            {{}, "../../up", "_.._.._up"},
            {{}, "a\nb", "a_b"},
            {{}, "", "_"},
            {{}, "Contact-Sheet", "Contact-Sheet 2"},
            {{}, longName, std::string(239, 'n')},
            {{}, longName, std::string(239, 'n') + " 2"},
            {{}, std::string(238, 'n') + "\u00E9", std::string(238, 'n')},
        };
    for (const auto& [input, preset, name] : cases) EXPECT_EQ(names.take(input, preset), name);
}

struct Batch : ProgramTest {
    Batch() {
        writeText(folder / "broken.wav", "no sound at all, and long enough to look at");
        for (const char* preset :
             {"Glass --set Density=90", "'Tag & Nacht' --set Pitch=7", "Rain --set Jittering=0.1"})
            rendered("in.wav --seconds 0.1 --save-bank B --save-preset " + std::string(preset));
    }
};

TEST_F(Batch, EveryInputIsRenderedWithEveryPresetAsItWouldBeAlone) {
    const ProgramRun ended =
        run("render in.wav broken.wav --bank B --preset '*' --out-dir out --seed 7 --json");
    EXPECT_EQ(ended.code, 1);
    EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 3) << ended.err;
    EXPECT_THAT(ended.err, HasSubstr("broken - Glass: "));
    const json reports = json::parse(ended.out, nullptr, false);
    ASSERT_EQ(reports.size(), 6u) << ended.out;
    EXPECT_EQ(reports[1]["preset"], "Tag & Nacht");
    EXPECT_TRUE(reports[3].contains("error"));
    EXPECT_THAT(folderEntries(folder / "out"),
                ElementsAre("contact-sheet.png", "in - Glass.png", "in - Glass.wav",
                            "in - Rain.png", "in - Rain.wav", "in - Tag & Nacht.png",
                            "in - Tag & Nacht.wav"));
    EXPECT_GT(fs::file_size(folder / "out/contact-sheet.png"), 60000u)
        << "without the three pictures it takes a tenth of that";
    for (const char* preset : {"Glass", "Rain"}) {
        const std::string alone =
            rendered(std::string("in.wav --seed 7 --bank B --preset ") + preset);
        EXPECT_TRUE(alone == readText(folder / ("out/in - " + std::string(preset) + ".wav")));
    }
}

TEST_F(Batch, AnInterruptEndsAllAndLeavesNoHalfFiles) {
    const ProgramRun ended =
        run("render in.wav --bank B --preset '*' --out-dir out --seconds 80000",
            "timeout --foreground --preserve-status -s INT 1");
    EXPECT_EQ(ended.code, 1);
    EXPECT_THAT(ended.err, HasSubstr("interrupted; 0 of 3 renders were written"));
    EXPECT_TRUE(fs::is_empty(folder / "out"));
}

} // namespace
} // namespace zephyra
