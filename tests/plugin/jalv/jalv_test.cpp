// jalv plays the LV2 plug-ins on a JACK server of this test's own, which needs no sound card.
#include "rendering/events/midi_file.h"
#include "tests/plugin/jack_client.h"

namespace zephyra {

namespace {

using namespace std::string_literals;

/// 120 beats a minute: C4 for one second, after a tenth.
const std::string kMidiFile = "MThd\0\0\0\6\0\0\0\1\0\x64"s + "MTrk\0\0\0\x0d"s +
                              "\x14\x90\x3c\x64\x81\x48\x80\x3c\x40\0\xff\x2f\0"s;

struct Jalv : testing::Test {
    void SetUp() override {
        if (std::system("{ command -v jackd && command -v jalv; } >/dev/null") != 0)
            GTEST_SKIP() << "jackd or jalv is not installed";
        server_.emplace();
        if (!server_->isUp) GTEST_SKIP() << "no JACK server starts: " << server_->program.output();
        player.emplace();
        fs::create_directory(folder / "lv2");
        fs::create_directory_symlink(ZEPHYRA_LV2_BUNDLE, folder / "lv2" / "zephyra.lv2");
    }
    void TearDown() override {
        player.reset();
        EXPECT_TRUE(!jalv_ || jalv_->runs()) << jalv_->output();
        jalv_.reset();
        if (commands_ >= 0) ::close(commands_);
    }
    /// Loads it and connects it to the player.
    void load(const std::string& uri, const std::string& options = "") {
        const std::string pipe = folder / "commands";
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        commands_ = ::open(pipe.c_str(), O_RDWR);
        jalv_.emplace(
            ChildProgram::Words{"sh", "-c",
                                "exec jalv -x -n zephyra " + options + " " + uri + " < " + pipe},
            ChildProgram::Words{"LV2_PATH=" + (folder / "lv2").string() + ":/usr/lib/lv2",
                                "ZEPHYRA_SHARED_FOLDER=" + (folder / "user").string(),
                                "ZEPHYRA_RESOURCE_FOLDER=" ZEPHYRA_SOURCE_DIR "/resources"},
            folder / "jalv");
        ASSERT_TRUE(comesTrue([&] { return player->connect("zephyra:out_left", "test:in"); }))
            << jalv_->output();
        ASSERT_TRUE(player->connect("test:midi", "zephyra:events"));
    }
    void say(const std::string& line) {
        ASSERT_EQ(::write(commands_, (line + "\n").c_str(), line.size() + 1),
                  static_cast<ssize_t>(line.size() + 1));
    }
    void setPort(const std::string& line, bool makesLoud) {
        say(line);
        EXPECT_TRUE(becomes(makesLoud)) << line;
    }
    bool becomes(bool loud) {
        return comesTrue([&] { return (player->peakOf(0.1) > 0.005f) == loud; });
    }

    const TemporaryFolder folder;
    std::optional<JackClient> player;

private:
    std::optional<JackServer> server_;
    std::optional<ChildProgram> jalv_;
    int commands_ = -1;
};

TEST_F(Jalv, PlaysTheInstrumentFromAMidiFileAndSetsItsPorts) {
    load("urn:zephyra:instrument");
    EXPECT_LT(player->peakOf(0.5), 0.0001f);
    const auto file = must(parseMidi(kMidiFile, std::nullopt, "the test's file"));
    ASSERT_EQ(file.messages.size(), 2u);
    std::vector<JackClient::Message> messages;
    for (const TimedMidi& each : file.messages)
        messages.push_back({each.seconds, {each.bytes[0], each.bytes[1], each.bytes[2]}});
    player->play(messages);
    EXPECT_TRUE(becomes(true)) << "at the first note";
    EXPECT_TRUE(comesTrue([&] { return player->hasPlayed(); }));
    EXPECT_TRUE(becomes(false)) << "after the last one";
    for (const auto& [line, loud] : {std::pair{"play_stop = 1", true},
                                     {"amplitude = 0", false},
                                     {"amplitude = 1", true},
                                     {"play_stop = 0", false}})
        setPort(line, loud);
    setPort("amplitude = 0", false);
    say("presets"); // before which jalv knows of none
    say("preset urn:zephyra:instrument:preset:whale_parliament_bird_machines");
    setPort("play_stop = 1", true); // by the preset's amplitude
}

TEST_F(Jalv, PlaysTheEffectByThePortsThatItBeginsWith) {
    load("urn:zephyra:effect", "-c dry_wet=100 -c play_stop=0");
    ASSERT_TRUE(player->connect("test:out", "zephyra:in_left"));
    player->whistle();
    EXPECT_TRUE(becomes(false));
    for (const auto& [line, loud] : {std::pair{"dry_wet = 0", true},
                                     {"dry_wet = 100", false},
                                     {"play_stop = 1", true},
                                     {"play_stop = 0", false},
                                     {"enabled = 0", true}})
        setPort(line, loud);
}

} // namespace

} // namespace zephyra
