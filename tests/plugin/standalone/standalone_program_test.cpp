// The standalone program as it is built: at a JACK server that dies, with a window, and without.

#include "tests/plugin/standalone/child_program.h"
#include "tests/plugin/standalone/jack_ear.h"
#include "tests/support/other_program.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

const std::string kSample = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Blackbird.mp3";
const std::string kBank = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Glass Weather.zephyra";
const std::string kLiveBank = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Live Water.zephyra";
constexpr float kHeard = 0.003f;

bool canRun(const std::string& program) {
    return !outputOf("command -v " + program).empty();
}

struct StandaloneProgram : testing::Test {
    void SetUp() override { ::setenv("JACK_DEFAULT_SERVER", server_.c_str(), 1); }
    void TearDown() override {
        if (jackd_) jackd_->end(SIGTERM); // a killed one stays among the eight that JACK counts
    }

    using Words = ChildProgram::Words;
    std::unique_ptr<ChildProgram> start(const Words& arguments, Words variables = {"DISPLAY"}) {
        Words words{STANDALONE};
        words.insert(words.end(), arguments.begin(), arguments.end());
        const std::string home = folder_.path().string();
        for (const char* const name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_DATA_HOME"})
            variables.push_back(std::string(name) + "=" + home);
        const fs::path log = folder_ / ("log-" + std::to_string(++started_));
        return std::make_unique<ChildProgram>(words, variables, log);
    }
    void startServer(const std::string& rate) {
        if (!canRun("jackd")) GTEST_SKIP() << "jackd is not installed (jackd2)";
        jackd_ = std::make_unique<ChildProgram>(
            Words{"jackd", "-n", server_, "-r", "-d", "dummy", "-r", rate, "-p", "256"}, Words{},
            folder_ / "jackd");
        if (!comesTrue([] { return JackEar().isThere(); }))
            GTEST_SKIP() << "no JACK server starts: " << jackd_->output();
    }
    void startDisplay() {
        if (!canRun("Xvfb")) GTEST_SKIP() << "Xvfb is not installed (xvfb)";
        const fs::path number = folder_ / "display";
        xvfb_ = std::make_unique<ChildProgram>(
            Words{"sh", "-c", "exec Xvfb -displayfd 3 3>" + quoted(number)}, Words{},
            folder_ / "xvfb");
        if (!comesTrue([&] { return !contentOf(number).empty(); }))
            GTEST_SKIP() << "Xvfb does not start: " << xvfb_->output();
        display_ = "DISPLAY=:" + contentOf(number).substr(0, contentOf(number).find('\n'));
    }
    static std::string contentOf(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::string session(int number = 1) const {
        return contentOf(folder_ / ("zephyra/session-" + std::to_string(number) + ".plist"));
    }

    TemporaryFolder folder_;
    const std::string server_ = "zephyra-test-" + std::to_string(::getpid());
    int started_ = 0;
    std::unique_ptr<ChildProgram> jackd_, xvfb_;
    std::string display_;
};

TEST_F(StandaloneProgram, ANoteSoundsAtTheJackPortsAlsoAfterTheServersDeathAndReturn) {
    startServer("48000");
    if (IsSkipped() || HasFatalFailure()) return;
    const auto program = start({"--headless", "--fresh", kSample});
    const auto sounds = [] {
        JackEar ear;
        if (!comesTrue([&] { return ear.listensTo("Zephyra"); })) return false;
        ear.play(60);
        return comesTrue([&] { return ear.peak() > kHeard; }) &&
               ear.isConnected("system:playback_2");
    };
    ASSERT_TRUE(program->says("JACK, 48000 Hz")) << program->output();
    EXPECT_TRUE(sounds()) << program->output();
    jackd_->end(SIGKILL);
    EXPECT_TRUE(program->says("JACK is gone")) << program->output();
    startServer("44100");
    EXPECT_TRUE(program->says("JACK, 44100 Hz")) << program->output();
    EXPECT_TRUE(sounds()) << program->output();
    EXPECT_EQ(program->end(SIGTERM), 0) << program->output();
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3"));
}

TEST_F(StandaloneProgram, LiveHearsTheInputAndWarnsOfFeedback) {
    startServer("48000");
    if (IsSkipped() || HasFatalFailure()) return;
    const auto program = start({"--headless", "--play", kLiveBank});
    JackEar ear;
    ASSERT_TRUE(comesTrue([&] { return ear.listensTo("Zephyra"); })) << program->output();
    EXPECT_TRUE(program->says("LIVE hears the input")) << program->output();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_LT(ear.peak(), kHeard); // nothing comes in yet
    ear.whistle();
    EXPECT_TRUE(comesTrue([&] { return ear.peak() > kHeard; })) << program->output();
}

TEST_F(StandaloneProgram, AWindowOpensBanksAndSoundsAndSavesWhenItIsAskedToEndOrLosesTheDisplay) {
    startDisplay();
    if (IsSkipped() || HasFatalFailure()) return;
    const fs::path mine = folder_ / "Mine.zephyra";
    fs::copy_file(kBank, mine);
    {
        const auto program = start({mine, folder_ / "none.wav", kSample}, {display_});
        ASSERT_TRUE(program->says("Blackbird.mp3 is loaded")) << program->output();
        EXPECT_THAT(program->output(),
                    AllOf(HasSubstr("none.wav does not exist"), HasSubstr("is among your banks")));
        ASSERT_TRUE(program->says("No sound: no device yet")) << program->output();
        EXPECT_EQ(program->end(SIGTERM), 0) << program->output();
    }
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3"));
    const auto program = start({}, {display_});
    ASSERT_TRUE(program->says("No sound")) << program->output();
    fs::remove(folder_ / "zephyra/session-1.plist");
    xvfb_->end(SIGKILL);
    EXPECT_EQ(program->end(0), 1) << program->output();
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3")) << program->output();
}

TEST_F(StandaloneProgram, EachOfSeveralKeepsASessionOfItsOwn) {
    const auto first = start({"--headless", kSample});
    ASSERT_TRUE(first->says("No sound")) << first->output();
    const auto second = start({"--headless"});
    ASSERT_TRUE(second->says("No sound")) << second->output();
    EXPECT_EQ(second->end(SIGINT), 0) << second->output();
    EXPECT_EQ(first->end(SIGHUP), 0) << first->output();
    EXPECT_THAT(session(1), HasSubstr("Blackbird.mp3"));
    EXPECT_THAT(session(2), AllOf(Not(HasSubstr("Blackbird.mp3")), Not(testing::IsEmpty())));
}

TEST_F(StandaloneProgram, WhatCannotBeStartedSaysSoInOneLine) {
    const struct {
        Words words;
        std::string display;
        int code;
        std::string line;
    } kCases[] = {
        {{"--help"}, "DISPLAY", 0, "--headless"},
        {{"--version"}, "DISPLAY", 0, "zephyra-standalone 0."},
        {{}, "DISPLAY", 1, "there is no display; --headless"},
        {{}, "DISPLAY=:1234567", 1, "there is no display :1234567; --headless"},
        {{"--audio", "wind"}, "DISPLAY", 2, "wind"},
        {{"--nonsense"}, "DISPLAY", 2, "--nonsense; see zephyra-standalone --help"},
    };
    for (const auto& row : kCases) {
        const auto program = start(row.words, {row.display});
        EXPECT_EQ(program->end(0), row.code) << program->output();
        EXPECT_THAT(program->output(), HasSubstr(row.line));
        if (row.code == 0) continue;
        EXPECT_EQ(std::ranges::count(program->output(), '\n'), 1);
    }
}

} // namespace
} // namespace zephyra
