// What moves a render's controls by itself: LFOs, takes, learned controllers.

#include "rendering/take_file.h"
#include "tests/cli/program.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace zephyra {
namespace {

class MovedRender : public ::testing::Test {
protected:
    MovedRender() {
        writeWav(folder_ / "in.wav", tone(44100));
        // At 96 ticks a beat of 0.5 s: controller 1 to 127 at once, to 0 a beat later.
        writeText(folder_ / "move.mid",
                  std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x0C\0\xB0\1\x7F\x60\xB0\1\0\0"
                              "\xFF\x2F\0",
                              34));
        writeText(folder_ / "take.csv", "0.9\n0.1\n");
    }
    std::string render(const std::string& arguments) {
        const ProgramRun run = runZephyra(
            folder_, "render in.wav -o out.wav --seed 7 --json --seconds 2 " + arguments);
        EXPECT_EQ(run.code, 0) << arguments << "\n" << run.err;
        if (run.code == 0) report_ = nlohmann::json::parse(run.out);
        return readText(folder_ / "out.wav");
    }

    TemporaryFolder folder_;
    nlohmann::json report_;
};

TEST_F(MovedRender, AllAtOnceGivesTheSameBytesAndPicturesAndEachPartIsHeard) {
    const std::string plain = render("--midi move.mid");
    const std::string options[] = {"--lfo Pitch:shape=random,hz=3", "--scrub take.csv",
                                   "--learn cc:1=Length", "--lfo Pan:link=1/16,mult=2"};
    std::string all = "--midi move.mid --picture p.png --record-scrub kept.csv";
    for (const std::string& option : options) {
        EXPECT_TRUE(render("--midi move.mid " + option) != plain) << option;
        all += " " + option;
    }
    const std::string effect = all + " --as effect --set 'rnd pitch=12'";
    EXPECT_TRUE(render(effect) == render(effect));
    const std::string first = render(all), picture = readText(folder_ / "p.png");
    const std::string kept = readText(folder_ / "kept.csv");
    EXPECT_TRUE(render(all) == first);
    EXPECT_TRUE(readText(folder_ / "p.png") == picture);
    EXPECT_EQ(readText(folder_ / "kept.csv"), kept);
    EXPECT_EQ(report_["lfos"], 2);
    EXPECT_EQ(report_["takePoints"], 2);
    EXPECT_EQ(report_["tempo"], 120.0);
    const auto take = parseTake(kept, "kept");
    ASSERT_TRUE(take) << take.message();
    EXPECT_EQ(report_["recordedTakePoints"], take.value().size());
    ASSERT_NEAR(static_cast<double>(take.value().size()), 30, 1);
    // At speed 1 the scan would stand elsewhere: the take holds it at its two places in turn.
    for (std::size_t i = 0; i < take.value().size(); ++i)
        EXPECT_NEAR(take.value()[i], i % 2 == 0 ? 0.9f : 0.1f, 1e-6f) << i;
}

TEST_F(MovedRender, ARecordedTakeMovesTheScanAgainAsItWent) {
    render("--lfo \"Scrubbing Wave:min=0.2,max=0.8,hz=1\" --record-scrub once.csv");
    render("--scrub once.csv --record-scrub twice.csv");
    const auto once = readTake(folder_ / "once.csv");
    ASSERT_TRUE(once) << once.message();
    const auto [low, high] = std::minmax_element(once.value().begin(), once.value().end());
    EXPECT_NEAR(*low, 0.2f, 0.02f);
    EXPECT_NEAR(*high, 0.8f, 0.02f);
    EXPECT_EQ(readText(folder_ / "twice.csv"), readText(folder_ / "once.csv"));
}

TEST_F(MovedRender, ATakeStandsAtItsFirstPositionFromTheFirstFrameOn) {
    std::vector<std::int16_t> late = tone(44100);
    std::fill(late.begin(), late.begin() + 22050, std::int16_t{0});
    writeWav(folder_ / "in.wav", late);
    writeText(folder_ / "take.csv", "0.75\n0.75\n");
    const std::string early = "--seconds 0.06 --scrub take.csv"; // its first tick comes later
    ASSERT_EQ(runZephyra(folder_, "render in.wav -o out.wav --float --json " + early).code, 0);
    const std::string sound = readText(folder_ / "out.wav");
    EXPECT_TRUE(std::any_of(sound.begin() + 100, sound.end(), [](char c) { return c != 0; }));
}

TEST_F(MovedRender, WhatIsAskedForCarriesTheScanRatherThanWhatTheStateBrought) {
    render("--lfo \"Scrubbing Wave\" --save-state lfo.plist");
    render("--state lfo.plist --scrub take.csv --save-state take.plist");
    EXPECT_FALSE(report_.contains("lfos"));
    EXPECT_EQ(report_["takePoints"], 2);
    render("--state take.plist --lfo \"Scrubbing Wave\"");
    EXPECT_EQ(report_["lfos"], 1);
    EXPECT_FALSE(report_.contains("takePoints"));
}

TEST_F(MovedRender, TheEchosTailIsAsLongAsTheGainThatAnLfoGivesIt) {
    const ProgramRun run =
        runZephyra(folder_, "render in.wav -o out.wav --json --set EchoSwitch=on "
                            "--lfo \"Left Gain:min=0.9,max=0.94\"");
    ASSERT_EQ(run.code, 0) << run.err;
    // 0.9114 a repeat: 75 of them, 0.3 s apart, to fall by 60 dB.
    EXPECT_NEAR(nlohmann::json::parse(run.out)["seconds"].get<double>(), 1 + 75 * 0.3, 0.5);
}

TEST_F(MovedRender, ALearnedControllerReachesItsControl) {
    render("--midi move.mid --learn cc:1=Amplitude,min=0,max=0");
    EXPECT_LT(report_["rms"].get<double>(), 0.05);
    EXPECT_EQ(report_["learnedControllers"], 1);
}

} // namespace
} // namespace zephyra
