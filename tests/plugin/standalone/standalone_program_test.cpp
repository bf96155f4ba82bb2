// The standalone program as it is built: at a JACK server that dies, with a window, and without.

#include "tests/plugin/jack_client.h"

namespace zephyra {
namespace {

const std::string kSample = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Blackbird.mp3";
const std::string kBank = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Glass Weather.zephyra";
const std::string kLiveBank = std::string(ZEPHYRA_SOURCE_DIR) + "/resources/Live Water.zephyra";
constexpr float kHeard = 0.003f;

struct StandaloneProgram : testing::Test {
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
        jack_.reset();
        if (std::system("command -v jackd >/dev/null") != 0)
            GTEST_SKIP() << "jackd is not installed";
        jack_ = std::make_unique<JackServer>(rate);
        if (!jack_->isUp) GTEST_SKIP() << "no JACK server starts: " << jack_->program.output();
    }
    /// Whether the program's ports are there and connected to the client.
    static bool areConnected(JackClient& client) {
        return comesTrue([&] {
            return client.connect("Zephyra:out_left", "test:in") &&
                   client.connect("test:out", "Zephyra:in_left") &&
                   client.connect("test:midi", "Zephyra:midi_in");
        });
    }
    std::string session(int number = 1) const {
        return readText(folder_ / ("zephyra/session-" + std::to_string(number) + ".plist"));
    }

    TemporaryFolder folder_;
    int started_ = 0;
    std::unique_ptr<JackServer> jack_;
};

TEST_F(StandaloneProgram, ANoteSoundsAtTheJackPortsAlsoAfterTheServersDeathAndReturn) {
    startServer("48000");
    if (IsSkipped() || HasFatalFailure()) return;
    const auto program = start({"--headless", "--fresh", kSample});
    const auto sounds = [](std::uint8_t note) {
        JackClient client;
        if (!areConnected(client)) return false;
        client.play({{0.0, {0x90, note, 100}}});
        return comesTrue([&] { return client.peakOf(0.1) > kHeard; }) &&
               client.isConnected("system:playback_2");
    };
    ASSERT_TRUE(program->says("JACK, 48000 Hz")) << program->output();
    EXPECT_TRUE(sounds(60)) << program->output();
    jack_->program.end(SIGKILL);
    EXPECT_TRUE(program->says("JACK is gone")) << program->output();
    startServer("44100");
    EXPECT_TRUE(program->says("JACK, 44100 Hz")) << program->output();
    EXPECT_TRUE(sounds(72)) << program->output();
    jack_->program.send(SIGSTOP); // one that hangs holds up the end, and not the session
    program->send(SIGTERM);
    EXPECT_TRUE(comesTrue([&] {
        return session().find("<key>Pitch_0</key>\n\t<real>12</real>") != std::string::npos;
    })) << session();
    jack_->program.send(SIGCONT);
    EXPECT_EQ(program->end(0), 0) << program->output();
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3"));
}

TEST_F(StandaloneProgram, LiveHearsTheInputAndWarnsOfFeedback) {
    startServer("48000");
    if (IsSkipped() || HasFatalFailure()) return;
    const auto program = start({"--headless", "--play", kLiveBank});
    JackClient client;
    ASSERT_TRUE(areConnected(client)) << program->output();
    EXPECT_TRUE(program->says("LIVE hears the input")) << program->output();
    EXPECT_LT(client.peakOf(1.0), kHeard); // nothing comes in yet
    client.whistle();
    EXPECT_TRUE(comesTrue([&] { return client.peakOf(0.1) > kHeard; })) << program->output();
}

TEST_F(StandaloneProgram, AWindowOpensBanksAndSoundsAndSavesWhenItIsAskedToEndOrLosesTheDisplay) {
    HiddenDisplay hidden;
    if (hidden.name().empty()) GTEST_SKIP() << "Xvfb is not installed (xvfb)";
    const std::string display = "DISPLAY=" + hidden.name();
    const fs::path mine = folder_ / "Mine.zephyra";
    fs::copy_file(kBank, mine);
    {
        const auto program = start({mine, folder_ / "none.wav", "", kSample}, {display});
        ASSERT_TRUE(program->says("Blackbird.mp3 plays once it is read")) << program->output();
        EXPECT_THAT(program->output(),
                    AllOf(HasSubstr("none.wav does not exist"), HasSubstr("name is empty"),
                          HasSubstr("is among your banks")));
        ASSERT_TRUE(program->says("No sound: no device yet")) << program->output();
        EXPECT_EQ(program->end(SIGTERM), 0) << program->output();
    }
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3"));
    const auto program = start({}, {display});
    ASSERT_TRUE(program->says("No sound")) << program->output();
    fs::remove(folder_ / "zephyra/session-1.plist");
    hidden.kill();
    EXPECT_EQ(program->end(0), 1) << program->output();
    EXPECT_THAT(session(), HasSubstr("Blackbird.mp3")) << program->output();
}

TEST_F(StandaloneProgram, EachOfSeveralKeepsASessionOfItsOwn) {
    const auto first = start({"--headless", kSample});
    ASSERT_TRUE(first->says("Blackbird.mp3 plays once it is read")) << first->output();
    ASSERT_TRUE(first->says("No sound")) << first->output();
    fs::create_directories(folder_ / "zephyra/session-2.plist/of"); // which cannot be read
    const auto second = start({"--headless"});
    ASSERT_TRUE(second->says("No sound")) << second->output();
    EXPECT_EQ(second->end(SIGINT), 0) << second->output();
    EXPECT_EQ(first->end(SIGHUP), 0) << first->output();
    EXPECT_THAT(session(1), HasSubstr("Blackbird.mp3"));
    EXPECT_THAT(session(2), AllOf(Not(HasSubstr("Blackbird.mp3")), Not(testing::IsEmpty())));
    EXPECT_TRUE(fs::exists(folder_ / "zephyra/session-2.unreadable.plist/of"));
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
        EXPECT_TRUE(row.code == 0 || std::ranges::count(program->output(), '\n') == 1);
    }
}

} // namespace
} // namespace zephyra
