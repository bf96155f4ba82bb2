// Where a stream's sound comes from and goes to: files, live input, exports and states.

#include "effects/stereo_echo.h"
#include "platform/files/file_calls.h"
#include "stream/sound_keeping.h"
#include "tests/support/stream_player.h"

#include <climits>

namespace zephyra {
namespace {

using enum ControlId;

/// Values that 16 bits hold exactly: first / 1024, (first + 1) / 1024, ...
Frames ramp(int first, std::size_t frames) {
    Frames values(frames);
    for (float& value : values) value = static_cast<float>(first++) / 1024.0f;
    return values;
}

/// A silent file of so many frames.
fs::path write(const fs::path& path, std::size_t frames) {
    fs::create_directories(path.parent_path());
    writeText(path, std::string(2 * frames, '\0'));
    return path;
}

struct StreamSound : testing::Test {
    TemporaryFolder folder;
    Player player{folder};
    MOK_SCRUB_GRANULATOR& stream = player.controller;
};

TEST_F(StreamSound, LoadsTheLatestFileAskedForAndKeepsTheOldOneWhereItCannot) {
    std::vector<SampleReport> ended;
    const auto path = write(folder / "shared/new.raw", 441), old = write(folder / "old.raw", 50);
    const auto keep = [&](const SampleReport& report) { ended.push_back(report); };
    const auto again = [&](auto&) { player.loader.loadSamplePerform(path, keep); };
    for (const bool isHeard : {false, true}) { // by one who asks for it again, and is the latest
        ended.clear();
        isHeard ? player.loader.loadSamplePerform(path, again)
                : player.loader.loadSamplePerform(old, keep);
        player.loader.loadSamplePerform(isHeard ? old : path, keep);
        player.finishWork();
        ASSERT_EQ(ended.size(), 2u);
        EXPECT_TRUE(ended[0].end == SampleEnd::superseded && ended[0].asked == old);
        EXPECT_TRUE(ended[1].end == SampleEnd::taken && ended[1].file == path);
    }
    const SampleReference reference = stream.sampleReference();
    EXPECT_EQ(reference.relativePath, "new.raw");
    EXPECT_EQ(stream.fileInformation(), "new.raw, 0.010 s, 44100 Hz, mono, " + reference.format);
    for (const auto& bad : {write(folder / "bad.wav", 9), folder / "missing.wav"}) {
        player.loader.loadSamplePerform(bad);
        player.finishWork();
        EXPECT_THAT(player.takeAlert(), HasSubstr(bad.string()));
        EXPECT_EQ(player.sound().size, 441u);
        EXPECT_EQ(stream.sampleReference(), reference);
    }
}

TEST_F(StreamSound, IsNormalizedOnceTouchedWithoutLossOfTheOriginal) {
    const auto sound = std::make_shared<mokSample>(100u, 8000.0f);
    sound->data[1] = -0.25f;
    ASSERT_TRUE(stream.loadSound(sound));
    EXPECT_EQ(&player.sound(), sound.get());
    // The next copy waits until a tenth of a second has passed, and is of the latest value.
    const std::tuple<float, double, float> moves[] = {
        {0.5f, 0.0, 0.5f}, {0.25f, 0.09, 0.5f}, {1.0f, 0.011, 1.0f}, {0.0f, 0.1, 0.0f}};
    for (const auto& [peak, seconds, heard] : moves) {
        ASSERT_TRUE(stream.setDisplayed(normalize, peak));
        player.pass(seconds);
        EXPECT_EQ(player.sound().data[player.sound().size + 1], -heard) << "guard";
    }
    EXPECT_EQ(sound->data[1], -0.25f);
    stream.setNormalizeTouched(false);
    EXPECT_EQ(&player.sound(), sound.get());
    stream.setDisplayed(live, 1.0f);
    stream.setDisplayed(normalize, 0.5f); // a gain now
    EXPECT_EQ(stream.waveForm().data().normalizeGain, 0.5f);
    stream.restoreLastSample();
    EXPECT_FALSE(stream.isLive() || stream.normalizeTouched());
    const auto refused = std::make_shared<mokSample>(100u, 8000.0f);
    refused->data[9] = INFINITY;
    EXPECT_FALSE(stream.loadSound(refused) || stream.loadSound(nullptr));
    EXPECT_EQ(&player.sound(), sound.get());
}

TEST_F(StreamSound, IsNormalizedInTheBackgroundWhenItIsLong) {
    const auto louder = [this] { return player.sound().data[1] / 0.25f; };
    const auto sound = std::make_shared<mokSample>(SoundNormalizer::kMostFramesAtOnce + 1, 8000.0f);
    sound->data[1] = 0.25f;
    ASSERT_TRUE(stream.loadSound(sound));
    for (const float peak : {0.5f, 0.75f, 1.0f}) {
        stream.setDisplayed(normalize, peak);
        EXPECT_EQ(louder(), 1.0f); // until the copy is there
    }
    player.finishWork();
    EXPECT_EQ(louder(), 2.0f);
    player.pass(0.11); // the knob has moved since
    player.finishWork();
    EXPECT_EQ(louder(), 4.0f);
    player.pass(0.11);
    // What is asked for meanwhile holds: the sound as it is, live input, another sound.
    const auto turned = [this](float peak, const auto& meanwhile) {
        stream.setDisplayed(normalize, peak);
        EXPECT_TRUE(stream.normalizer().isBusy());
        meanwhile();
        player.finishWork();
        player.pass(0.11);
        player.finishWork();
        return &player.sound();
    };
    EXPECT_EQ(turned(0.5f, [this] { stream.setNormalizeTouched(false); }), sound.get());
    const auto* const heard = turned(0.25f, [this] { stream.setDisplayed(live, 1.0f); });
    EXPECT_EQ(heard, stream.waveForm().liveSample());
    stream.restoreLastSample();
    player.finishWork();
    player.pass(0.11);
    const auto another = std::make_shared<mokSample>(100u, 8000.0f);
    EXPECT_EQ(turned(0.5f, [&] { stream.loadSound(another); }), another.get());
    // A file is looked through and scaled while it is read; what the knob does then counts as well.
    player.loader.loadSamplePerform(write(folder / "long.raw", SoundNormalizer::kMostFramesAtOnce));
    stream.setDisplayed(normalize, 0.1f);
    player.finishWork();
    EXPECT_EQ(player.sound().size, SoundNormalizer::kMostFramesAtOnce);
    // A knob that never rests is heard now and then, and in the end as it stands.
    const auto longest = std::make_shared<mokSample>(1u << 23, 8000.0f);
    longest->data[1] = 0.25f;
    ASSERT_TRUE(stream.loadSound(longest));
    const float before = louder();
    float peak = 0.0f;
    const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (int turn = 0; louder() == before && std::chrono::steady_clock::now() < giveUp; ++turn) {
        stream.setDisplayed(normalize, peak = turn % 2 ? 0.5f : 0.75f);
        player.pass(0.11);
    }
    EXPECT_NE(louder(), before);
    for (int copy = 0; copy < 2; ++copy) {
        player.finishWork();
        player.pass(0.11);
    }
    EXPECT_EQ(louder(), 4.0f * peak);
}

TEST_F(StreamSound, StaysWhatLiveHeardUntilAFileComesAndExportsItInTheOrderOfTime) {
    stream.play();
    for (const double rate : {0.0, -44100.0, 1e300, 32000.0}) {
        stream.setLiveAllowed(rate != 32000.0);
        player.instance.session.sampleRate = rate;
        stream.ui_enableLiveInput();
        EXPECT_FALSE(stream.isLive() || stream.waveForm().isLiveCurrent());
    }
    stream.setLiveAllowed(true);
    stream.ui_enableLiveInput();
    stream.waveForm().initLiveBuffer_andSamplingRate(4696, 32000.0);
    const auto saved = [&] {
        player.exporter.saveData();
        player.instance.alerts.answer("Save");
        player.finishWork();
        const auto file = readSoundFile(player.exporter.lastSaved());
        return file ? file.value().samples : Frames{};
    };
    const auto entries = [&] {
        return std::distance(fs::directory_iterator(folder / "shared"), {});
    };
    EXPECT_EQ(saved(), Frames{});
    EXPECT_THAT(player.takeAlert(), HasSubstr("Problem writing audio file:"));
    player.hear(ramp(1, 400));
    EXPECT_EQ(saved(), ramp(1, 400));
    player.hear(Frames(4096));
    player.hear(ramp(401, 350)); // wraps
    Frames all = ramp(151, 250);
    all.resize(4346);
    std::ranges::copy(ramp(401, 350), std::back_inserter(all));
    // The wall's next block may come while it is copied, where the oldest frames are.
    EXPECT_EQ(saved(), Frames(all.end() - 600, all.end()));
    player.instance.runLoop.setClock(RunLoop::Clock::sample);
    EXPECT_EQ(saved(), all);
    player.instance.runLoop.setClock(RunLoop::Clock::wall);
    stream.ui_enableLiveInput();
    player.hear(ramp(0, 100)); // not heard any more
    EXPECT_EQ(saved(), all);
    EXPECT_EQ(player.exporter.lastSaved(), folder / "shared" / "Rec 4.wav");
    int calls = 0, failing = 0;
    do { // leaves no file, not even an empty one
        const auto before = entries();
        calls = 0;
        setFileCallGate([&](FileCall call, auto&) {
            return calls++ == failing && call != FileCall::remove ? EIO : 0;
        });
        player.exporter.save();
        player.finishWork();
        setFileCallGate({});
        EXPECT_EQ(entries(), before + player.takeAlert().empty()) << "call " << failing;
    } while (calls > failing++);
    EXPECT_EQ(&player.sound(), stream.waveForm().liveSample());
    EXPECT_TRUE(stream.isPlaying() && !stream.isLive());
    stream.loadSound(std::make_shared<mokSample>(100u, 8000.0f));
    EXPECT_EQ(player.sound().size, 100u);
}

TEST_F(StreamSound, IsKeptAsFreezeHoldsItAndComesBackHeld) {
    const Frames heard = ramp(1, 100);
    stream.ui_enableLiveInput();
    stream.waveForm().initLiveBuffer_andSamplingRate(100, 44100.0);
    player.hear(heard);
    stream.ui_freeze();
    player.hear(ramp(200, 100)); // until the index stands where it stood
    PropertyDictionary state = player.state();
    EXPECT_FALSE(stream.capturedMemory().sound.empty()); // encoded once, because it stands still
    stream.ui_freeze();
    EXPECT_FALSE(player.state().at("Captured_0") == state.at("Captured_0"));
    player.hear(heard);
    stream.ui_freeze();
    (*state.at("Captured_0").as<PropertyDictionary>())["Newer"] = "kept";
    Player again(folder);
    for (int turn = 0; turn < 2; ++turn) { // also into a stream that holds another sound
        again.restore(state);
        again.hear(ramp(200, 9));
        EXPECT_TRUE(again->isLive() && again->waveForm().isHeld());
        EXPECT_EQ(again->waveForm().heardFrames(), heard);
        again->ui_liveClear();
        EXPECT_TRUE(again.state() == state);
        again->ui_freeze();
        again.hear(ramp(300, 9));
        EXPECT_EQ(again->waveForm().heardFrames(), ramp(300, 9));
        again->ui_freeze();
    }
    EXPECT_FALSE(again.state().at("Captured_0").as<PropertyDictionary>()->contains("Newer"));
    player.exporter.save();
    player.finishWork();
    EXPECT_EQ(readSoundFile(player.exporter.lastSaved()).value().samples, heard);
    // LIVE off touches neither the engine nor a fade-out: nothing that is heard changes.
    stream.play();
    stream.controls._playToggle.tag = 1;
    stream.ui_playStop();
    stream.engine().setPitch(7.0f);
    const auto before = StreamProbe::fields(stream.engine());
    stream.ui_enableLiveInput();
    EXPECT_TRUE(StreamProbe::fields(stream.engine()) == before && stream.isScrubbing());
    ASSERT_TRUE(keepSoundAsFile(stream));
    EXPECT_FALSE(stream.waveForm().isHeld());
    EXPECT_EQ(Frames(player.sound().getPtr(), player.sound().getPtr() + 100), heard);
}

TEST_F(StreamSound, PlaysOnThroughASwitchOfLiveAndIsNotWrittenInItsMiddle) {
    stream.play();
    bool played = false;
    stream.waveForm().setReplacedHandler([&] { // where a render cycle may come
        played = stream.isPlaying();
        player.hear(ramp(100, 3));
    });
    stream.ui_enableLiveInput();
    EXPECT_TRUE(played && stream.isPlaying() && stream.setCaptured(ramp(1, 9), 44100.0));
    EXPECT_EQ(stream.waveForm().heardFrames(), ramp(1, 9));
}

TEST_F(StreamSound, LetsAFileWaitBehindASoundThatWasChosenWhileItWasRead) {
    const auto path = write(folder / "late.raw", 100);
    stream.ui_enableLiveInput();
    player.hear(ramp(1, 50));
    player.loader.loadSamplePerform(path);
    for (int press = 0; press < 2; ++press) stream.ui_enableLiveInput();
    player.finishWork();
    EXPECT_TRUE(stream.isLive());
    stream.ui_enableLiveInput();
    PropertyDictionary state = player.state();
    state.erase("Sample_0");
    player.loader.loadSamplePerform(path);
    player.restore(state);
    EXPECT_EQ(&player.sound(), stream.waveForm().liveSample());
}

TEST_F(StreamSound, EchoesAtTheOutputsRateUnlessAStateDoesNotSaySo) {
    using namespace delay_stereo_forward;
    const std::pair<std::optional<bool>, double> cases[] = {
        {std::nullopt, 13230}, {true, 14400}, {false, 13230}};
    const auto samples = [this] { return getparameter(stream.engine().echoModule(), kTimeL); };
    stream.prepare(48000);
    EXPECT_EQ(samples(), 14400); // a new sound: 300 ms
    for (const auto& [says, expected] : cases) {
        PropertyDictionary state = player.state();
        state.erase("EchoAtOutputRate_0");
        if (says) state["EchoAtOutputRate_0"] = *says;
        player.restore(state);
        EXPECT_NEAR(samples(), expected, 1e-3);
        EXPECT_EQ(player.state().contains("EchoAtOutputRate_0"), says == true);
        stream.prepare(44100);
        EXPECT_NEAR(samples(), 13230, 1e-3);
        stream.prepare(48000);
        EXPECT_NEAR(samples(), expected, 1e-3);
    }
}

TEST_F(StreamSound, CleansTheTakeOfAState) {
    const Frames given{std::nanf(""), 2.0f, INFINITY, -1.0f, 0.5f};
    const auto bytes = std::as_bytes(std::span(given));
    PropertyData::Bytes data(bytes.begin(), bytes.end());
    data.resize(data.size() + 3, std::byte{0xFF}); // most of another point
    const StreamControls& c = stream.controls;
    for (const auto& [length, size] :
         {std::pair(-9LL, 0u), {8, 8}, {1801, 1800}, {LLONG_MAX, 1800}, {2, 2}}) {
        stream.scrubRecorder.ui_scrubRec(); // ends
        player.restore({{"_0_SCRUB_REC_LENGTH_", std::int64_t{length}},
                        {"_0_SCRUB_REC_", PropertyData(data)},
                        {"_0_SCRUB_REC_IS_PLAYING_", 1}});
        const auto take = stream.scrubRecorder.take();
        Frames expected{0, 1, 1, 0, 0.5f};
        expected.resize(size);
        EXPECT_EQ(Frames(take.begin(), take.end()), expected);
        EXPECT_EQ(player.state().contains("_0_SCRUB_REC_"), size > 0);
        EXPECT_TRUE(c.scrubRec.tag == 0 && c.scrubPlay.tag == (size > 0));
    }
    player.restore({});
    EXPECT_TRUE(c.scrubPlay.tag == 0 && stream.scrubRecorder.take().empty());
}

} // namespace
} // namespace zephyra
