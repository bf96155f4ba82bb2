// What a render's host does, heard in its sound.

#include "stream/control_ranges.h"
#include "tests/cli/program.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <optional>

namespace zephyra {
namespace {

class HostedRender : public ::testing::Test {
protected:
    HostedRender() { writeWav(folder_ / "in.wav", tone(44100)); }

    /// The bytes of the file that a render writes, and what it said.
    std::string render(const std::string& arguments) {
        const ProgramRun run = runZephyra(
            folder_, "render in.wav -o out.wav --seed 7 --json " + arguments, environment());
        EXPECT_EQ(run.code, 0) << arguments << "\n" << run.err;
        if (run.code == 0) report_ = nlohmann::json::parse(run.out);
        return readText(folder_ / "out.wav");
    }
    std::string environment() const {
        return "ZEPHYRA_SHARED_FOLDER='" + folder_.path().string() + "/shared'";
    }
    double rms() const { return report_["rms"]; }

    TemporaryFolder folder_;
    nlohmann::json report_;
};

TEST_F(HostedRender, EverythingAtOnceGivesTheSameBytesAndEachPartIsHeard) {
    writeText(folder_ / "moves.csv", "0,Pan,-1\n1b,Pan,1,ramp\n0.5,Density,200,step\n");
    // Note-on 72 at beat 0, of a file at 96 ticks a beat.
    writeText(
        folder_ / "note.mid",
        std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x08\0\x90\x48\x40\0\xFF\x2F\0", 30));
    const std::string plain = render("--tempo 120");
    const std::string options[] = {"--automate moves.csv",
                                   "--midi note.mid",
                                   "--freeze",
                                   "--scan-sync 2,4",
                                   "--fade-out 0.5",
                                   "--fade-in 0.5",
                                   "--echo-sync 1/16,1/32T",
                                   "--meter 3/4 --scan-sync 1,3"};
    std::string all = "--tempo 120 --block 100";
    for (const std::string& option : options) {
        EXPECT_TRUE(render("--tempo 120 " + option) != plain) << option;
        if (option.find("meter") == std::string::npos) all += " " + option;
    }
    EXPECT_TRUE(render(all) == render(all));
}

TEST_F(HostedRender, TheTransportStartsTheGrainsAndAFadeEndsWithThem) {
    render("--transport stop");
    EXPECT_EQ(rms(), 0.0);
    for (const char* started : {"--transport play", "--scan-sync 1,4"}) {
        render(started);
        EXPECT_GT(rms(), 0.05) << started;
    }
    render("--fade-out 1 --float --seconds 1");
    const std::string bytes = readText(folder_ / "out.wav");
    float last = 1.0f; // of the left channel, 100 frames before the end
    std::memcpy(&last, bytes.data() + bytes.size() - 800, sizeof last);
    EXPECT_LT(std::abs(last), 0.02f);
}

TEST_F(HostedRender, AnEffectMixesItsInputAsTold) {
    render("--as effect --drywet 0");
    EXPECT_NEAR(rms(), 0.354, 0.02); // the tone itself, once the mix has glided up
    EXPECT_EQ(report_["as"], "effect");
    EXPECT_TRUE(report_["live"]);
    writeWav(folder_ / "other.wav", std::vector<std::int16_t>(44100, 8000));
    render("--as music-effect --drywet 100 --sample other.wav");
    EXPECT_FALSE(report_["live"]);
}

TEST_F(HostedRender, ASavedStateGivesTheSoundBack) {
    const std::string set = "--set Density=90 --set \"Rnd Pitch=5\" --envelope Sync --start 0.25";
    const std::string first = render(set + " --save-state state.zephyra");
    EXPECT_TRUE(render("") != first);
    EXPECT_TRUE(render("--state state.zephyra") == first);
}

TEST_F(HostedRender, AStateFindsItsSampleFromAnotherFolderOrSaysInOneLineThatItIsGone) {
    const std::string asEffect = "render ../in.wav --as effect --state ../s -o ../o.wav";
    std::filesystem::create_directory(folder_ / "sub");
    writeWav(folder_ / "sample.wav", tone(61 * 8000), 8000); // too long to go along with a state
    render("--as effect --sample sample.wav --save-state s");
    EXPECT_EQ(runZephyra(folder_, asEffect, "cd sub;" + environment()).code, 0);
    std::filesystem::remove(folder_ / "sample.wav");
    const ProgramRun gone = runZephyra(folder_, asEffect, "cd sub;" + environment());
    EXPECT_EQ(gone.code, 1);
    EXPECT_EQ(std::count(gone.err.begin(), gone.err.end(), '\n'), 1) << gone.err;
}

TEST_F(HostedRender, WhatIsOddInAMidiFileIsToldBesideTheReport) {
    const std::string folder = ZEPHYRA_SOURCE_DIR "/fuzz/corpus/performance_file/";
    const std::string command = "render in.wav -o out.wav --json --seconds 0.1 --midi " + folder;
    const ProgramRun odd = runZephyra(folder_, command + "longer-header.mid");
    EXPECT_EQ(odd.code, 0) << odd.err;
    EXPECT_EQ(nlohmann::json::parse(odd.out).at("midiMessages"), 2);
    EXPECT_EQ(odd.err, "zephyra: " + folder +
                           "longer-header.mid: its header is longer than 6 "
                           "bytes; what follows them is skipped\n");
    EXPECT_EQ(runZephyra(folder_, command + "five-notes.mid").err, "");
}

} // namespace
} // namespace zephyra
