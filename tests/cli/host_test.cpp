// What a render's host does, and what moves controls by itself, heard in its sound.

#include "rendering/events/take_file.h"
#include "tests/cli/program.h"

namespace zephyra {
namespace {

using namespace std::string_literals;

struct HostedRender : ProgramTest {
    HostedRender() : ProgramTest(44100) {}

    std::string render(const std::string& arguments) {
        return rendered("in.wav --seed 7 " + always + arguments);
    }
    /// At 96 ticks a beat; after goes behind the track.
    void writeMidi(const char* name, std::string events, const std::string& after = {}) {
        events.append("\0\xFF\x2F\0", 4);
        std::string file("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0", 21);
        file.push_back(static_cast<char>(events.size()));
        writeText(folder / name, file + events + after);
    }
    double rms() const { return seen["rms"]; }
    std::string always; // stands in front of the arguments
    /// All options at once, each of which changes what base gives.
    std::string eachHeard(const std::string& base, const std::vector<std::string>& options) {
        const std::string plain = render(base);
        std::string all = base;
        for (const std::string& option : options) {
            EXPECT_TRUE(render(base + " " + option) != plain) << option;
            all += " " + option;
        }
        return all;
    }
};

TEST_F(HostedRender, EverythingAtOnceGivesTheSameBytesAndEachPartIsHeard) {
    writeText(folder / "moves.csv", "0,Pan,-1\n1b,Pan,1,ramp\n0.5,Density,200,step\n");
    writeMidi("note.mid", "\0\x90\x48\x40"s);
    const std::string all =
        eachHeard("--tempo 120",
                  {"--automate moves.csv", "--midi note.mid", "--freeze", "--fade-out 0.5",
                   "--fade-in 0.5", "--echo-sync 1/16,1/32T", "--start 0.25 --end 0.5",
                   "--envelope Sync", "--quality best", "--meter 3/4 --scan-sync 1,3"}) +
        " --block 100";
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
    const std::string bytes = readText(folder / "out.wav");
    float last = 1.0f; // of the left channel, 100 frames before the end
    std::memcpy(&last, bytes.data() + bytes.size() - 800, sizeof last);
    EXPECT_LT(std::abs(last), 0.02f);
}

TEST_F(HostedRender, ItsTempoAndMeterFollowAMidiFileWhereAskedTo) {
    // 2/4; from beat 6, at a second, 3/4 and 240 beats a minute.
    writeMidi("song.mid", "\0\xFF\x58\4\2\2\x18\x08\x84\x40\xFF\x51\3\3\xD0\x90"
                          "\0\xFF\x58\4\3\2\x18\x08"s);
    writeText(folder / "stop.csv", "1.1,Play Stop,0\n");
    writeText(folder / "again.csv", "1.1,Play Stop,0\n1.4,Play Stop,1\n");
    always = "--float --seconds 2.5 --scan-sync 1,3 --tempo 360 --midi song.mid --midi-tempo ";
    const std::string stopped = render("--automate stop.csv"),
                      again = render("--automate again.csv");
    const auto differs = std::ranges::mismatch(stopped, again).in1 - stopped.begin();
    EXPECT_NEAR(static_cast<double>(differs) / (8 * 44100), 1.75, 0.05); // beat 9, the next bar
}

TEST_F(HostedRender, AnEffectMixesItsInputAsTold) {
    render("--as effect --drywet 0");
    EXPECT_NEAR(rms(), 0.354, 0.02); // the tone itself, once the mix has glided up
    EXPECT_TRUE(seen["as"] == "effect" && seen["live"] == true) << seen;
    writeWav(folder / "other.wav", std::vector<std::int16_t>(44100, 8000));
    render("--as music-effect --drywet 100 --sample other.wav");
    EXPECT_FALSE(seen["live"]);
}

TEST_F(HostedRender, ASavedStateGivesTheSoundBack) {
    const std::string set =
        "--set Density=90 --set \"Rnd Pitch=5\" --envelope Sync --quality best --start 0.25";
    const std::string first = render(set + " --save-state state.zephyra");
    EXPECT_TRUE(render("") != first);
    EXPECT_TRUE(render("--state state.zephyra --save-state state.zephyra") == first);
    EXPECT_TRUE(rendered("in.wav --state state.zephyra") == first); // with its seed
    EXPECT_EQ(seen["seed"], 7);
    EXPECT_TRUE(rendered("in.wav --state state.zephyra --seed 8") != first);
}

TEST_F(HostedRender, ProgramsAndBanksOfAMidiFileAreLeftOutUnlessAskedForAndOddThingsTold) {
    writeMidi("note.mid", "\0\x90\x48\x40"s);
    writeMidi("song.mid", "\0\xB0\0\1\0\xC0\2\0\x90\x48\x40"s, "odd");
    always = "--bank 'Bird Machines' --preset 'Night Owl' ";
    const std::string note = render("--midi note.mid --save-state note");
    EXPECT_TRUE(render("--midi song.mid --save-state song") == note);
    EXPECT_EQ(seen["midiMessages"], 3);
    EXPECT_EQ(readText(folder / "song"), readText(folder / "note"));
    EXPECT_TRUE(render("--midi song.mid --learn cc:0=Length") != note);
    always = "--state note --midi song.mid ";
    EXPECT_TRUE(render("--programs") != render(""));
    const std::string songs = "render in.wav ./in.wav --out-dir out --midi song.mid ",
                      odd = "zephyra: song.mid: 3 bytes after the last track are ignored\n";
    EXPECT_EQ(run(songs).err, odd + "zephyra: song.mid: 1 program change chooses no preset; add "
                                    "--programs if it should\n");
    EXPECT_THAT(run(songs + "--programs").err, Not(HasSubstr("program change")));
}

TEST_F(ProgramTest, FreezesFromTheTimeAskedForAndTakesNoFileForATime) {
    const std::string live = "--live ", heard = "--as effect --state heard.plist ";
    rendered("--seed 7 --live in.wav --save-state heard.plist");
    writeWav(folder / "long.wav", tone(22 * 8000), 8000);
    const std::pair<std::string, std::string> same[] = {
        {"--freeze in.wav", "in.wav --at 0:Freeze=on"},
        {"in.wav --freeze 0.1", "in.wav --at 0.1:Freeze=on"},
        {"in.wav --set Freeze=on --freeze=0.1", "in.wav --freeze 0.1"},
        {live + "--freeze in.wav", live + "in.wav --at 0.25:Freeze=on"}, // half of it
        {live + "--freeze 0.4 in.wav", live + "in.wav --at 0.4:Freeze=on"},
        {live + "--freeze long.wav", live + "long.wav --at 10:Freeze=on"},
        {heard + "--freeze in.wav", heard + "in.wav --at 0.25:Freeze=on"},
    };
    for (const auto& [frozen, asSetting] : same)
        EXPECT_TRUE(rendered("--seed 7 " + frozen) == rendered("--seed 7 " + asSetting)) << frozen;
    expectRefused("render in.wav --freeze 0.5", 2, "--freeze 0.5 comes after the grains' end");
    expectRefused("render in.wav --freeze=soon", 2, "--freeze takes seconds from 0 to 86400");
    // A state comes back as it was left, whatever INPUT has to say.
    rendered(live + "--freeze in.wav --save-state held.plist");
    writeWav(folder / "silence.wav", std::vector<std::int16_t>(22050));
    rendered("silence.wav --as effect --drywet 100 --freeze --state held.plist");
    EXPECT_GT(double{seen["rms"]}, 0.05);
}

struct MovedRender : HostedRender {
    MovedRender() {
        always = "--seconds 2 ";
        // Controller 1 to 127 at once, to 0 a beat of 0.5 s later.
        writeMidi("move.mid", "\0\xB0\1\x7F\x60\xB0\1\0"s);
        writeText(folder / "take.csv", "0.9\n0.1\n");
    }
};

TEST_F(MovedRender, AllAtOnceGivesTheSameBytesAndPicturesAndEachPartIsHeard) {
    const std::string all =
        eachHeard("--midi move.mid", {"--lfo Pitch:shape=random,hz=3", "--scrub take.csv",
                                      "--learn cc:1=Length", "--lfo Pan:link=1/16,mult=2"}) +
        " --picture p.png --record-scrub kept.csv";
    const std::string effect = all + " --as effect --set 'rnd pitch=12'";
    EXPECT_TRUE(render(effect) == render(effect));
    const std::string first = render(all), picture = readText(folder / "p.png");
    const std::string kept = readText(folder / "kept.csv");
    EXPECT_TRUE(render(all) == first && readText(folder / "p.png") == picture);
    EXPECT_EQ(readText(folder / "kept.csv"), kept);
    EXPECT_TRUE(seen["lfos"] == 2 && seen["learnedControllers"] == 1) << seen;
    EXPECT_TRUE(seen["takePoints"] == 2 && seen["tempo"] == 120.0) << seen;
    const auto take = must(parseTake(kept, "kept"));
    EXPECT_EQ(seen["recordedTakePoints"], take.size());
    ASSERT_NEAR(static_cast<double>(take.size()), 30, 1);
    // At speed 1 the scan would stand elsewhere: the take holds it at its two places in turn.
    for (std::size_t i = 0; i < take.size(); ++i)
        EXPECT_NEAR(take[i], i % 2 == 0 ? 0.9f : 0.1f, 1e-6f) << i;
}

TEST_F(MovedRender, WhatIsAskedForCarriesTheScanRatherThanWhatTheStateBrought) {
    render("--lfo \"Scrubbing Wave\" --save-state lfo.plist");
    render("--state lfo.plist --scrub take.csv --save-state take.plist");
    EXPECT_FALSE(seen.contains("lfos"));
    EXPECT_EQ(seen["takePoints"], 2);
    render("--state take.plist --lfo \"Scrubbing Wave\"");
    EXPECT_EQ(seen["lfos"], 1);
    EXPECT_FALSE(seen.contains("takePoints"));
}

} // namespace
} // namespace zephyra
