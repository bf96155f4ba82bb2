// What live input writes, where it writes it, and how grains find it.

#include "engine/grain_voice.h"
#include "stream/live_buffer.h"
#include "tests/support/block_partition.h"
#include "tests/support/test_stream.h"

namespace zephyra {
namespace {

constexpr float kMax = std::numeric_limits<float>::max();

struct LiveBuffer : testing::Test {
    NotificationCenter notifications;
    AudioSession session;
    Log log;
    RenderCycle cycle;
    Retirement retirement{cycle};
    WaveForm wave{notifications, session, log, retirement};

    /// Writes mono values first, first + 1, ... in one block.
    void writeRamp(int first, int frames) {
        std::vector<float> ramp(static_cast<std::size_t>(frames));
        std::iota(ramp.begin(), ramp.end(), static_cast<float>(first));
        drawLiveWaveForm(&wave, frames, ChannelList{ramp.data()}.list);
    }
    std::vector<float> stored(std::size_t frames) const {
        std::vector<float> copy(frames);
        wave.copyLive(0, copy);
        return copy;
    }
};

TEST_F(LiveBuffer, MixesMonoWholeAndStereoWithTheSecondChannelHalved) {
    const std::tuple<std::int64_t, float, float, float, float> cases[] = {
        {2, 1.0f, 1.0f, 1.0f, 1.5f},  {2, 1.0f, 0.0f, 1.0f, 0.5f},   {2, 0.5f, 1.0f, -1.0f, 0.25f},
        {3, 1.0f, 1.0f, 1.0f, 1.5f},  {1, 1.0f, 0.25f, 1.0f, 0.25f}, {0, 0.5f, 1.0f, 1.0f, 0.5f},
        {-1, 1.0f, 1.0f, 1.0f, 1.0f}, {2, 1.0f, NAN, 1.0f, 0.0f},    {2, 1.0f, 1.0f, NAN, 0.0f},
        {2, 1.0f, kMax, kMax, 0.0f},  {1, 1.0f, 1.0f, NAN, 1.0f},    {1, NAN, 1.0f, 1.0f, 0.0f}};
    wave.enableLIVE(true);
    for (const auto& [channels, gain, first, second, expected] : cases) {
        wave.resetLiveWriteIndex();
        wave.data().numberOfInputChannels = channels;
        wave.data().normalizeGain = gain;
        float in0 = first, in1 = second, in2 = 99.0f;
        drawLiveWaveForm(&wave, 1, ChannelList{&in0, &in1, &in2}.list);
        EXPECT_EQ(stored(1)[0], expected) << first << ", " << second << " at " << gain;
    }
}

TEST_F(LiveBuffer, WritesNothingUnlessSwitchedOnAndReady) {
    float in = 1.0f;
    const ChannelList list{&in}, none{}, noMemory{nullptr, &in};
    drawLiveWaveForm(nullptr, 1, list.list);
    writeRamp(1, 1); // off
    wave.enableLIVE(true);
    for (const int frames : {0, -5}) drawLiveWaveForm(&wave, frames, list.list);
    for (const ChannelList* empty : {&none, &noMemory}) drawLiveWaveForm(&wave, 1, empty->list);
    wave.data().mSample.load()->ready = false;
    writeRamp(1, 1);
    wave.data().mSample.load()->ready = true;
    wave.stopLiveTimer();
    writeRamp(1, 1);
    EXPECT_EQ(std::tuple(wave.getWriteLiveIndex(), stored(1)[0]), std::tuple(0u, 0.0f));
}

TEST_F(LiveBuffer, HoldsTheSameWhateverTheBlocks) {
    ASSERT_TRUE(wave.enableLIVE(true));
    wave.initLiveBuffer_andSamplingRate(1000, 44100.0);
    std::vector<float> expected(1000);
    std::iota(expected.begin(), expected.begin() + 321, 4000.0f);
    std::iota(expected.begin() + 321, expected.end(), 3321.0f);
    for (const std::uint32_t seed : {1u, 2u, 3u}) {
        wave.resetLiveWriteIndex();
        int first = 0;
        for (const std::int32_t block : randomPartition(4321, 1500, seed)) {
            writeRamp(first, block);
            first += block;
        }
        EXPECT_EQ(std::tuple(stored(1000), wave.getWriteLiveIndex()), std::tuple(expected, 321u));
    }
}

TEST_F(LiveBuffer, AsksForARedrawInTheThirtiethCycleOf256FramesAndEvery29After) {
    wave.enableLIVE(true);
    std::vector<int> asked;
    for (int now = 1; now <= 100; ++now) {
        writeRamp(0, 256);
        if (wave.takeRedrawRequest()) asked.push_back(now);
    }
    EXPECT_EQ(asked, (std::vector<int>{30, 59, 88}));
    EXPECT_FALSE(wave.takeRedrawRequest());
    wave.stopLiveTimer();
    EXPECT_TRUE(wave.takeRedrawRequest());
}

TEST_F(LiveBuffer, KeepsItsBufferUnlessTheRateHasChangedOrItIsCleared) {
    int refreshed = 0;
    notifications.addObserver("refreshParameters", [&](const std::any&) { ++refreshed; });
    ASSERT_TRUE(wave.enableLIVE(true));
    EXPECT_EQ(wave.liveSample()->size, 441000u);
    writeRamp(1, 3);
    const mokSample* const before = wave.liveSample();
    ASSERT_TRUE(wave.enableLIVE(true));
    EXPECT_EQ(std::tuple(wave.liveSample(), wave.getWriteLiveIndex()), std::tuple(before, 3u));
    EXPECT_EQ(refreshed, 2);

    const mokSample* told = nullptr;
    wave.makeLiveCurrent();
    wave.setReplacedHandler([&] {
        told = wave.liveSample();
        EXPECT_EQ(wave.data().mSample.load(), told);
        EXPECT_EQ(retirement.waiting(), 0u); // the old one is let go last
    });
    const auto expectFresh = [&](float rate) {
        EXPECT_EQ(wave.liveSample()->sampleRate, rate);
        EXPECT_EQ(wave.liveSample()->size, 441000u);
        EXPECT_EQ(wave.data().mSample.load(), wave.liveSample());
        EXPECT_EQ(std::tuple(told, wave.getWriteLiveIndex()), std::tuple(wave.liveSample(), 0u));
        EXPECT_EQ(stored(3), (std::vector<float>{0, 0, 0}));
    };
    session.sampleRate = 48000.0;
    ASSERT_TRUE(wave.followSession());
    expectFresh(48000.0f);
    writeRamp(1, 3);
    ASSERT_TRUE(wave.followSession());
    EXPECT_EQ(wave.getWriteLiveIndex(), 3u);
    {
        const RenderCycle::Scope running(cycle);
        ASSERT_TRUE(wave.clearBuffer());
        EXPECT_EQ(retirement.waiting(), 1u);
    }
    expectFresh(48000.0f);
    retirement.collect();
    wave.resetLiveWriteIndex(); // of the old buffer
    wave.setLiveContent(std::vector<float>{7, 8}, 48000.0);
    EXPECT_EQ(wave.getWriteLiveIndex(), 2u);
    writeRamp(10, 5);
    wave.resetLiveWriteIndex();
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u); // at once, and taken with the next block
    writeRamp(20, 2);
    wave.enableLIVE(false);
    session.sampleRate = 44100.0;
    ASSERT_TRUE(wave.followSession());
    EXPECT_EQ(wave.heardFrames(), (std::vector<float>{10, 11, 12, 13, 14, 20, 21}));
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    retirement.collect();
    EXPECT_EQ(retirement.waiting(), 0u);
}

TEST_F(LiveBuffer, IsHeardAsItWasWhenItFrozeWhateverBecomesOfTheInput) {
    using Frames = std::vector<float>;
    const mokSample* told = nullptr;
    int changes = 0;
    wave.setReplacedHandler([&] { told = wave.mSample(), ++changes; });
    const auto expectHeld = [&](const Frames& frames, std::uint64_t holds, int changed) {
        EXPECT_EQ(wave.heardFrames(), frames);
        EXPECT_EQ(wave.getWriteLiveIndex(), frames.size());
        EXPECT_TRUE(wave.isHeld() && told == wave.mSample() && told == wave.liveSample());
        EXPECT_EQ(std::pair(wave.holds(), changes), std::pair(holds, changed));
    };
    wave.enableLIVE(true);
    writeRamp(1, 3);
    wave.freeze(true);
    EXPECT_EQ(told, nullptr); // the file is current
    wave.makeLiveCurrent();
    expectHeld({1, 2, 3}, 1, 1);
    writeRamp(4, 5);
    wave.clearBuffer();
    session.sampleRate = 48000.0;
    EXPECT_TRUE(wave.followSession() && wave.enableLIVE(false));
    expectHeld({1, 2, 3}, 1, 1);
    EXPECT_EQ(wave.mSample()->sampleRate, 44100.0f);
    wave.setLiveContent(Frames{7, 8}, 44100.0);
    expectHeld({7, 8}, 2, 2);
    writeRamp(9, 1);
    wave.takeRedrawRequest();
    wave.freeze(false);
    EXPECT_TRUE(wave.takeRedrawRequest() && !wave.isHeld() && told == wave.data().mSample.load());
    wave.freeze(true);
    expectHeld({7, 8, 9}, 3, 4);
    wave.makeFileCurrent();
    EXPECT_TRUE(!wave.isHeld() && told == wave.mSample());
    wave.makeLiveCurrent();
    EXPECT_EQ(wave.holds(), 4u);
    // Nothing heard, or no memory: grains go on following the input.
    wave.clearBuffer();
    wave.freeze(true);
    EXPECT_FALSE(wave.isHeld());
    writeRamp(1, 3);
    std::string line;
    log.setSink([&](std::string_view text) { line = text.substr(0, 17); });
    wave.data().mSample.load()->size = ~0ull;
    wave.freeze(true);
    EXPECT_TRUE(!wave.isHeld() && line == "Freeze: no memory") << line;
}

TEST_F(LiveBuffer, IsHeldWithoutAGapWhileItIsWritten) {
    constexpr int kBlock = 64, kLastExact = 1 << 24;
    wave.enableLIVE(true);
    wave.makeLiveCurrent();
    int next = 7 * static_cast<int>(WaveForm::kLiveFrames) / 4;
    writeRamp(0, next);
    std::atomic<bool> ended = false;
    std::thread render([&] { // some ten times as fast as a host
        for (; !ended && next < kLastExact; next += kBlock) {
            writeRamp(next, kBlock);
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    });
    for (int hold = 0; hold < 50; ++hold) {
        wave.freeze(true);
        const std::vector<float> held = wave.heardFrames();
        // A block that was being written may stand where the oldest frames were.
        EXPECT_EQ(std::adjacent_find(held.begin() + kBlock, held.end(),
                                     [](float a, float b) { return b != a + 1.0f; }),
                  held.end());
        wave.freeze(false);
    }
    ended = true;
    render.join();
}

TEST_F(LiveBuffer, IsCutFromTheOldestFrameToTheNewest) {
    // A power of two, so that positions are exact: modulo 1020 the last four frames are never read.
    constexpr int kSize = 1024;
    const mokWindow flat(16, kWindowRectangular);
    const auto frameAt = [&](int position) {
        mokGrain grain(wave.liveSample(), &flat, 1024.0f, 1);
        grain.start();
        grain.setParameters(1.0f, 0.0f, static_cast<double>(position) / kSize, 1e6f);
        float out = 0.0f;
        grain.Processing(&out, 1);
        return out;
    };
    for (const int w : {1, 4, 1019, 500}) {
        wave.initLiveBuffer_andSamplingRate(kSize, 44100.0);
        wave.startLiveTimer();
        writeRamp(0, kSize);
        writeRamp(kSize, w);
        EXPECT_EQ(frameAt(0), static_cast<float>(w));
        EXPECT_EQ(frameAt(kSize - 5), static_cast<float>(kSize + w - 1));
    }
}

} // namespace
} // namespace zephyra
