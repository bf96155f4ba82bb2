// Starting, stopping and syncing a stream, tick by tick on the sample clock.

#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

namespace zephyra {
namespace {

using enum ControlId;
using Log = std::vector<std::string>;

constexpr double kTick = 0.017;
constexpr double kBit = 1e-6; // so that what is due at a time is surely done
constexpr float kVolume = 0.8f;

struct Others : ToldSettings, Keyboard {
    void releaseAllNotes() override { told.push_back("notes off"); }
    void highlightKey_andData1_andData2(int status, int key, int velocity) override {
        told.push_back(std::to_string(status) + ' ' + std::to_string(key) + ' ' +
                       std::to_string(velocity));
    }
};

struct StreamTransport : testing::Test {
    StreamTransport() {
        stream->setSettings(&others);
        stream->loadSound(std::make_shared<mokSample>(40000, 10000.0f)); // 4 s
        stream->setDisplayed(amplitude, kVolume);
    }
    /// As a finger does, with what the run loop then does at once.
    void press(Button& button) {
        button.sendActionsForControlEvents(control_event::touchUpInside);
        stream.pass(0.0);
    }
    void ticks(int count) { stream.pass(count * kTick + kBit); }
    float level() { return StreamProbe::fields(stream->engine()).level; }
    float speed() { return StreamProbe::fields(stream->engine()).speed; }
    double cursor() { return stream->scrubArea.animation.opacity(stream.instance.runLoop.now()); }

    Others others; // before the stream that tells them
    TestStream stream;
    Button& playButton = stream->controls._playToggle;
};

TEST_F(StreamTransport, StopsTheScanAtOnceFadesOutAndCutsTheGrainsHalfASecondLater) {
    press(playButton);
    EXPECT_TRUE(playButton.tag == 1 && playButton.title == "\xEE\x9D\xB5");
    EXPECT_FLOAT_EQ(level(), 0.017f * kVolume); // the first tick does not wait
    EXPECT_EQ(cursor(), 0.0);
    ticks(10); // 0.187 of the volume
    EXPECT_NEAR(cursor(), 0.17, 1e-5);
    press(playButton);
    EXPECT_EQ(others.told, Log(2, "play"));
    EXPECT_TRUE(playButton.tag == 0 && playButton.title == "\xEE\x9D\xBB" && !playButton.tintColor);
    EXPECT_NEAR(level(), 0.153 * kVolume, 1e-6);
    ticks(4);
    EXPECT_NEAR(level(), 0.017 * kVolume, 1e-6); // nothing fades in any more
    EXPECT_NEAR(cursor(), 1 - 0.068 / 0.5, 1e-5);
    stream->setDisplayed(amplitude, 1.0f);
    stream->setDisplayed(scanning, 2.0f);
    EXPECT_NEAR(level(), 0.017 * kVolume, 1e-6);
    EXPECT_EQ(speed(), 0.0f);
    ticks(1);
    EXPECT_EQ(level(), 0.0f);
    stream.pass(0.499);
    EXPECT_TRUE(stream->isPlaying() && stream->isScrubbing());
    stream.pass(0.002);
    EXPECT_FALSE(stream->isPlaying() || stream->isScrubbing());
    EXPECT_EQ(speed(), 2.0f);
}

TEST_F(StreamTransport, EndsLongGrainsWithTheFadeAndStartsWithoutThem) {
    auto even = std::make_shared<mokSample>(44100, 44100.0f);
    std::fill_n(even->getPtr(), 44100 + mokBuffer::kGuardPoints, 1.0f);
    stream->loadSound(even);
    stream->setDisplayed(length, 2000.0f);
    stream->setDisplayed(density, 5.0f);
    StereoBlock out(441 * 1000);
    std::size_t at = 0;
    const auto play = [&](double seconds) {
        const std::size_t from = at;
        for (; at < from + static_cast<std::size_t>(seconds * 44100); at += 441) {
            GranulatorProcessing(&stream.controller, 441, nullptr, out.from(at));
            stream.pass(0.01);
        }
        return *std::max_element(&out.left[from], &out.left[at]);
    };
    press(playButton);
    play(3.0);
    press(playButton);
    const float before = play(0.01);
    play(0.24);
    EXPECT_LT(play(0.01), 0.6f * before);
    play(0.26);
    EXPECT_EQ(play(0.1), 0.0f); // half a second, and a tick to arrive
    play(0.5);
    EXPECT_FALSE(stream->isPlaying());
    press(playButton);
    EXPECT_GT(play(2.0), 0.1f);
    press(playButton);
    play(0.3);
    press(playButton); // again while it fades
    play(1.0);
    for (std::size_t n = 1; n < at; ++n)
        ASSERT_LT(std::abs(out.left[n] - out.left[n - 1]), 1e-2f) << n;
}

TEST_F(StreamTransport, StartsAnewFromTheLevelReachedWithOneChainOfTicks) {
    press(playButton);
    ticks(9);
    stream.pass(kTick / 2);
    for (int i = 0; i < 4; ++i) press(playButton); // 0.17, two stops and two starts later 0.136
    ticks(2);
    EXPECT_NEAR(level(), 0.17 * kVolume, 1e-6);
    for (int i = 0; i < 3; ++i) press(playButton); // ends with a stop, at 0.119
    ticks(1);
    EXPECT_NEAR(level(), 0.085 * kVolume, 1e-6);
    press(playButton);
    press(playButton);
    ticks(10); // silent, the engine still on
    press(playButton);
    stream.pass(2.0);
    EXPECT_TRUE(stream->isPlaying()); // the old stop: was taken back
    EXPECT_EQ(level(), kVolume);
}

TEST_F(StreamTransport, ArmsAndDisarmsForTheDownbeatWhileTheScanIsSynced) {
    stream->setDisplayed(scanSync, 1.0f);
    stream.pass(0.0);
    for (const bool armed : {true, false, true}) {
        press(playButton);
        EXPECT_EQ(stream->isArmed(), armed);
        EXPECT_EQ(playButton.backgroundColor, armed ? std::optional(kArmedRed) : std::nullopt);
        EXPECT_EQ(stream->linear(playStop), armed ? 1.0f : 0.0f);
    }
    EXPECT_FALSE(stream->isPlaying());
    EXPECT_EQ(std::exchange(others.told, {}), Log(3, "play"));
    stream->syncStateTempoForte();
    stream.pass(0.0);
    EXPECT_EQ(std::exchange(others.told, {}), Log{"play"});
    EXPECT_TRUE(stream->isPlaying() && !stream->isArmed() && !playButton.backgroundColor);
    press(playButton);
    press(playButton);
    EXPECT_TRUE(stream->isArmed());
    stream->setDisplayed(scanSync, 0.0f);
    stream.pass(0.0);
    EXPECT_FALSE(stream->isArmed() || playButton.backgroundColor);
    stream->syncStateTempoForte();
    stream->forceToPlayIfShouldPlay();
    stream.pass(0.0);
    EXPECT_EQ(playButton.tag, 0);
}

TEST_F(StreamTransport, FollowsTheHostOnlyWhileTheScanIsSynced) {
    const auto tellAll = [&] {
        others.told.clear();
        stream->setScrubNormalizedValue(0.5f);
        stream->shouldPlay();
        stream->shouldPlay(); // is armed already
        stream->shouldRewind();
        stream->shouldRewindFromHost();
        stream->syncStateTempoForte();
        stream->shouldPlay(); // plays already
        stream->forceToPlayIfShouldPlay();
        stream->shouldStop(); // before the start shows
        stream->shouldStop();
        stream.pass(0.0);
        return others.told;
    };
    EXPECT_EQ(tellAll(), Log{});
    EXPECT_EQ(stream->getTimePhasor(), 0.5f);
    stream->setDisplayed(scanSync, 1.0f);
    EXPECT_EQ(tellAll(), (Log{"play", "play", "play"}));
    EXPECT_EQ(std::tuple(stream->getTimePhasor(), playButton.tag), std::tuple(0.0f, 0));
}

TEST_F(StreamTransport, KeepsTheOrderOfWhatComesBetweenTwoRunsOfTheLoop) {
    // A hand, the host's start and stop, a start in a bar, a bar; a blank lets the loop run.
    const std::map<char, std::function<void()>> acts = {
        {'h', [&] { playButton.sendActionsForControlEvents(control_event::touchUpInside); }},
        {'s', [&] { stream->shouldPlay(); }},
        {'x', [&] { stream->shouldStop(); }},
        {'f', [&] { stream->forceToPlayIfShouldPlay(); }},
        {'b', [&] { stream->syncStateTempoForte(); }},
        {' ', [&] { stream.pass(0.0); }}};
    const std::tuple<const char*, bool, bool> cases[] = {
        {"sfxsf", true, false},   {"sbxsb", true, false}, {"sfxsfxsfx", false, false},
        {"sbbx", false, false},   {"sx", false, false},   {"s x", false, false},
        {"s x sb", true, false},  {"hsx", false, true},   {"s hhx", false, true},
        {"sb x hx", false, true}, {"hbh", false, false}};
    stream->setDisplayed(scanSync, 1.0f);
    for (const auto& [told, plays, armed] : cases) {
        for (const char* act = told; *act; ++act) acts.at (*act)();
        stream.pass(2.0);
        EXPECT_TRUE(playButton.tag == plays && stream->isPlaying() == plays &&
                    stream->isArmed() == armed)
            << told;
        if (plays || armed) press(playButton);
        stream.pass(2.0);
    }
}

TEST_F(StreamTransport, ScansTheSoundAndEchoesItAtTheHostsTempo) {
    const std::tuple<float, float, float, double, float, float> cases[] = {
        {1, 2, 4, 120, 1.0f, 500},      {1, 2, 4, 60, 0.5f, 1000}, {1, 1, 3, 120, 8 / 3.0f, 500},
        {1, 2, 0, 120, 0.0f, 500},      {0, 2, 4, 60, 3.0f, 1000}, {1, 2, 4, 240, 2.0f, 250},
        {1, 2, 4, HUGE_VAL, 2.0f, 250}, {0, 2, 4, -5, 3.0f, 60000}};
    stream->setDisplayed(scanning, 3.0f);
    stream->setDisplayed(echoSync, 1.0f);
    stream->setDisplayed(leftSubdivision, 7); // a quarter
    for (const auto& [sync, measureCount, quarterCount, bpm, scanned, echo] : cases) {
        stream->setDisplayed(scanSync, sync);
        stream->setDisplayed(measures, measureCount);
        stream->setDisplayed(quarters, quarterCount);
        stream->syncStateDidChangedWithBPM(bpm);
        EXPECT_FLOAT_EQ(stream->engine().echoTimeL, echo) << bpm;
        EXPECT_FLOAT_EQ(speed(), scanned) << bpm;
        press(stream->controls._freeze);
        EXPECT_EQ(speed(), 0.0f);
        press(stream->controls._freeze);
        EXPECT_FLOAT_EQ(speed(), scanned);
    }
    stream->setDisplayed(echoSync, 0.0f);
    EXPECT_EQ(stream->engine().echoTimeL, 300.0f);
}

TEST_F(StreamTransport, TurnsNotesIntoPitchesAndThePitchIntoANote) {
    const std::pair<int, float> cases[] = {{60, 0}, {72, 12}, {36, -24}, {127, 24}, {-1, 24}};
    for (const auto& [note, expected] : cases) {
        stream->selectPitchFromMidiNote_andVeloc(note, 1);
        EXPECT_EQ(stream->displayed(pitch), expected) << note;
    }
    stream->setKeyboard(&others);
    stream->setDisplayed(pitch, -11.6f);
    press(stream->controls._keyboardButton);
    EXPECT_EQ(others.told, (Log{"notes off", "144 60 127"})); // note 48, an octave up
    press(stream->controls._keyboardButton);
    EXPECT_EQ(others.told.size(), 2u);
}

TEST_F(StreamTransport, PressesAButtonOnlyForAValueThatItDoesNotShow) {
    for (const float on : {1.0f, 1.0f, 0.0f, 0.0f, 1.0f, 0.0f}) {
        EXPECT_TRUE(stream->setDisplayed(playStop, on) && stream->setDisplayed(freeze, on));
        EXPECT_EQ(stream->linear(freeze), on);
    }
    stream.pass(0.0);
    EXPECT_EQ(playButton.tag, 0); // also though no start had shown before the next switch
    EXPECT_EQ(std::count(others.told.begin(), others.told.end(), "freeze"), 4);
    EXPECT_TRUE(stream->setDisplayed(live, 1.0f));
    stream->setLiveAllowed(false);
    EXPECT_FALSE(stream->isLive() || stream->setDisplayed(live, 1.0f));
}

TEST(StreamFade, EndsAThousandthBeforeFullAndBeforeSilence) {
    for (const auto& [share, ends] : {std::pair(0.9985, false), {0.9995, true}}) {
        RunLoop loop;
        StreamFade fade(loop);
        const auto isOver = [](StreamFade::Outcome o) { return o == StreamFade::Outcome::ended; };
        fade.beginIn(StreamFade::kTick / share);
        EXPECT_EQ(isOver(fade.tickIn([] {})), ends);
        EXPECT_NEAR(fade.multiplier(), ends ? 1.0 : share, 1e-9);
        fade.tickIn([] {}); // to full
        fade.beginOut(StreamFade::kTick / share);
        EXPECT_EQ(isOver(fade.tickOut([] {})), ends);
        EXPECT_NEAR(fade.multiplier(), ends ? 0.0 : 1.0 - share, 1e-9);
    }
}

} // namespace
} // namespace zephyra
