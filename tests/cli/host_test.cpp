// What a render's host does: automation, MIDI, tempo, transport, states.

#include "rendering/automation_lane.h"
#include "tests/cli/program.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace zephyra {
namespace {

TEST(Automation, LinesBecomePointsByTimeAndWrongOnesAreNamed) {
    const auto read =
        parseAutomation("time,parameter,value,kind\n# a comment\n\n"
                        "4b, density, 400, ramp\r\n1.5,\"Echo Switch\",on\n2s,Pan,-1,step",
                        60.0, "moves");
    ASSERT_TRUE(read) << read.message();
    const auto& points = read.value();
    ASSERT_EQ(points.size(), 3u);
    EXPECT_EQ(points[0].parameter, ControlId::echoSwitch);
    EXPECT_EQ(points[1].linear, -1.0f);
    EXPECT_EQ(points[2].seconds, 4.0); // four beats at 60
    EXPECT_TRUE(points[2].ramp);
    EXPECT_EQ(points[2].linear, 400.0f);

    const std::pair<const char*, const char*> wrong[] = {
        {"1,Density", "moves, line 1: a line is time,parameter,value"},
        {"1,Pan,0\n-1,Pan,0", "moves, line 2: a time is seconds from 0 up"},
        {"1,Normalize,1", "there is no parameter \"Normalize\""}, // no host parameter
        {"1,Pan,2", "Pan takes -1 to 1, not \"2\""},
        {"1,Pan,0,slide", "a step or a ramp"},
        {"1,LIVE,on,ramp", "knows no ramp"},
    };
    for (const auto& [text, message] : wrong) {
        const auto failed = parseAutomation(text, 120.0, "moves");
        ASSERT_FALSE(failed) << text;
        EXPECT_NE(failed.message().find(message), std::string::npos) << failed.message();
    }
}

TEST(Automation, AStepIsSentOnceAndARampOnceABlock) {
    AutomationLane lane({{1.0, ControlId::pan, 0.5f, false}, {3.0, ControlId::pan, -0.5f, true}},
                        0.0f);
    const struct {
        double from, to;
        std::optional<AutomationLane::Event> sent;
    } blocks[] = {
        {0.0, 0.5, {}},
        {0.5,
         1.5,
         {{0.25f, 0, true}}}, // the step's time is here, but the ramp is under way already
        {1.5, 2.0, {{0.0f, 0, true}}},
        {2.0, 4.0, {{-0.5f, 0, true}}}, // arrives
        {4.0, 5.0, {}},
    };
    for (const auto& block : blocks) {
        const auto event = lane.next(block.from, block.to, 100.0);
        ASSERT_EQ(event.has_value(), block.sent.has_value()) << block.from;
        if (!event) continue;
        EXPECT_FLOAT_EQ(event->value, block.sent->value) << block.from;
        EXPECT_EQ(event->ramp, block.sent->ramp) << block.from;
    }
    AutomationLane steps({{0.25, ControlId::pan, 1.0f, false}}, 0.0f);
    EXPECT_EQ(steps.next(0.0, 0.5, 100.0)->offset, 25u);
    EXPECT_FALSE(steps.next(0.5, 1.0, 100.0));
}

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

TEST_F(HostedRender, ASavedStateGivesTheSoundBackAndAWrongOneIsNamed) {
    const std::string set = "--set Density=90 --set \"Rnd Pitch=5\" --envelope Sync --start 0.25";
    const std::string first = render(set + " --save-state state.zephyra");
    EXPECT_TRUE(render("") != first);
    EXPECT_TRUE(render("--state state.zephyra") == first);
    writeText(folder_ / "broken", "<plist><dict><key>a</key>");
    const ProgramRun run = runZephyra(folder_, "render in.wav --state broken", environment());
    EXPECT_EQ(run.code, 1);
    EXPECT_NE(run.err.find("--state: broken"), std::string::npos) << run.err;
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

TEST(Commands, ParametersPrintsTheTableThatHostsSee) {
    const TemporaryFolder folder;
    const auto table = nlohmann::json::parse(runZephyra(folder, "parameters --json").out);
    ASSERT_EQ(table.size(), kParameterCount);
    EXPECT_EQ(table[5]["identifier"], "Density_0");
    EXPECT_EQ(table[5]["flags"], 0xC0400000u);  // exponential, from above 0
    EXPECT_EQ(table[12]["flags"], 0xC0000000u); // exponential, from 0
    EXPECT_NE(runZephyra(folder, "parameters").out.find("Ring Modulation Amount"),
              std::string::npos);
}

} // namespace
} // namespace zephyra
