// What live input writes, where it writes it, and how grains find it.

#include "engine/grain_voice.h"
#include "stream/live_buffer.h"
#include "tests/support/block_partition.h"
#include "tests/support/test_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace zephyra {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kMax = std::numeric_limits<float>::max();

class LiveBuffer : public testing::Test {
protected:
    NotificationCenter notifications;
    AudioSession session;
    RenderCycle cycle;
    Retirement retirement{cycle};
    WaveForm wave{notifications, session, retirement};

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
    const struct {
        std::int64_t channels;
        float gain, in0, in1, expected;
    } cases[] = {
        {2, 1.0f, 1.0f, 1.0f, 1.5f},  {2, 1.0f, 0.0f, 1.0f, 0.5f},   {2, 0.5f, 1.0f, -1.0f, 0.25f},
        {3, 1.0f, 1.0f, 1.0f, 1.5f},  {1, 1.0f, 0.25f, 1.0f, 0.25f}, {0, 0.5f, 1.0f, 1.0f, 0.5f},
        {-1, 1.0f, 1.0f, 1.0f, 1.0f}, {2, 1.0f, kNaN, 1.0f, 0.0f},   {2, 1.0f, 1.0f, kNaN, 0.0f},
        {2, 1.0f, kMax, kMax, 0.0f},  {1, 1.0f, 1.0f, kNaN, 1.0f},   {1, kNaN, 1.0f, 1.0f, 0.0f},
    };
    wave.enableLIVE(true);
    for (const auto& c : cases) {
        wave.resetLiveWriteIndex();
        wave.data().numberOfInputChannels = c.channels;
        wave.data().normalizeGain = c.gain;
        float in0 = c.in0, in1 = c.in1, in2 = 99.0f;
        drawLiveWaveForm(&wave, 1, ChannelList{&in0, &in1, &in2}.list);
        EXPECT_EQ(stored(1)[0], c.expected) << c.in0 << ", " << c.in1 << " at " << c.gain;
    }
}

TEST_F(LiveBuffer, WritesNothingUnlessSwitchedOnAndReady) {
    float in = 1.0f;
    const ChannelList list{&in};
    const ChannelList none{};
    const ChannelList noMemory{nullptr, &in};
    drawLiveWaveForm(nullptr, 1, list.list);
    drawLiveWaveForm(&wave, 1, list.list); // off
    wave.enableLIVE(true);
    drawLiveWaveForm(&wave, 0, list.list);
    drawLiveWaveForm(&wave, -5, list.list);
    drawLiveWaveForm(&wave, 1, none.list);
    drawLiveWaveForm(&wave, 1, noMemory.list);
    wave.data().mSample.load()->ready = false;
    drawLiveWaveForm(&wave, 1, list.list);
    wave.data().mSample.load()->ready = true;
    wave.stopLiveTimer();
    drawLiveWaveForm(&wave, 1, list.list);
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    EXPECT_EQ(stored(1)[0], 0.0f);
}

TEST_F(LiveBuffer, IsBackAtItsStartAfterAsManyFramesAsItHolds) {
    wave.enableLIVE(true);
    for (int block = 0; block < 441; ++block) writeRamp(block * 1000, 1000);
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    EXPECT_EQ(stored(441000)[440999], 440999.0f);
    writeRamp(-1, 1);
    EXPECT_EQ(wave.getWriteLiveIndex(), 1u);
    EXPECT_EQ(stored(1)[0], -1.0f);
}

TEST_F(LiveBuffer, HoldsTheSameWhateverTheBlocks) {
    wave.initLiveBuffer_andSamplingRate(1000, 44100.0);
    wave.startLiveTimer();
    for (const std::uint32_t seed : {1u, 2u, 3u}) {
        wave.resetLiveWriteIndex();
        int first = 0;
        for (const std::int32_t block : randomPartition(4321, 1500, seed)) {
            writeRamp(first, block);
            first += block;
        }
        const auto copy = stored(1000);
        for (int n = 0; n < 1000; ++n)
            ASSERT_EQ(copy[static_cast<std::size_t>(n)],
                      static_cast<float>(n < 321 ? 4000 + n : 3000 + n));
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

TEST_F(LiveBuffer, ShowsAResetAtOnceAndTakesItWithTheNextBlock) {
    wave.enableLIVE(true);
    writeRamp(10, 5);
    EXPECT_EQ(wave.getWriteLiveIndex(), 5u);
    wave.resetLiveWriteIndex();
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    writeRamp(20, 2);
    EXPECT_EQ(wave.getWriteLiveIndex(), 2u);
    EXPECT_EQ(stored(5), (std::vector<float>{20, 21, 12, 13, 14}));
    wave.enableLIVE(false);
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
}

TEST_F(LiveBuffer, KeepsItsBufferUnlessTheSessionsRateHasChanged) {
    wave.enableLIVE(true);
    EXPECT_EQ(wave.liveSample()->size, 441000u);
    writeRamp(1, 3);
    const mokSample* const before = wave.liveSample();
    wave.enableLIVE(true);
    EXPECT_EQ(wave.liveSample(), before);
    EXPECT_EQ(wave.getWriteLiveIndex(), 3u);

    session.sampleRate = 48000.0;
    wave.enableLIVE(true);
    EXPECT_EQ(wave.liveSample()->sampleRate, 48000.0f);
    EXPECT_EQ(wave.liveSample()->size, 441000u);
    EXPECT_EQ(wave.data().mSample.load(), wave.liveSample());
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    EXPECT_EQ(stored(1)[0], 0.0f);
    EXPECT_EQ(retirement.waiting(), 0u);
}

TEST_F(LiveBuffer, StaysOffAtARateThatCannotBe) {
    for (const double rate : {0.0, -44100.0, double{kNaN}, 1e300}) {
        session.sampleRate = rate;
        EXPECT_FALSE(wave.enableLIVE(true)) << rate;
        EXPECT_FALSE(wave.enableLIVE());
        EXPECT_FALSE(wave.data().isLiveEnabled);
    }
}

TEST_F(LiveBuffer, ForgetsWhatItHeardAndTellsWhoReadsIt) {
    wave.enableLIVE(true);
    writeRamp(1, 3);
    const mokSample* told = nullptr;
    wave.setReplacedHandler([&] { told = wave.liveSample(); });
    ASSERT_TRUE(wave.clearBuffer());
    EXPECT_EQ(told, wave.liveSample());
    EXPECT_EQ(wave.getWriteLiveIndex(), 0u);
    EXPECT_EQ(stored(3), (std::vector<float>{0, 0, 0}));
    EXPECT_TRUE(wave.enableLIVE());
}

TEST_F(LiveBuffer, ShowsThatItIsLiveAndRemembersTheSoundBefore) {
    int refreshed = 0;
    notifications.addObserver("refreshParameters", [&](const std::any&) { ++refreshed; });
    wave.setCurrentPath("bird.wav");
    wave.enableLIVE(true);
    wave.enableLIVE(true);
    EXPECT_EQ(wave.currentPath(), "NULL");
    EXPECT_EQ(wave.lastSelectedPath(), "bird.wav");
    EXPECT_EQ(wave.title(), "Live Input from Matrix Channels");
    EXPECT_EQ(wave.shortTitle(), "Live");
    EXPECT_EQ(refreshed, 2);
}

class LiveSeam : public LiveBuffer {
protected:
    // A power of two, so that positions are exact: modulo 1020 the last four frames are never read.
    static constexpr int kSize = 1024;
    static constexpr float kRate = 1024.0f;
    mokWindow flat{16, kWindowRectangular};

    /// What a grain reads that starts at frame position and moves by step frames a sample.
    std::vector<float> read(int position, int step, int count) {
        mokGrain grain(wave.liveSample(), &flat, kRate);
        grain.start();
        // Every sample steps before it reads.
        grain.setParameters(1.0f, static_cast<float>(step),
                            static_cast<double>(position - step) / kSize, 1e6f);
        std::vector<float> out(static_cast<std::size_t>(count));
        grain.Processing(out.data(), count);
        return out;
    }
};

TEST_F(LiveSeam, PutsTheOldestFrameAtPositionZeroAndTheNewestFourBelowTheEnd) {
    for (const int w : {1, 4, 500, 1019}) {
        wave.initLiveBuffer_andSamplingRate(kSize, 44100.0);
        wave.startLiveTimer();
        writeRamp(0, kSize);
        writeRamp(kSize, w);
        const float oldest = static_cast<float>(w), newest = static_cast<float>(kSize + w - 1);
        EXPECT_EQ(read(0, 0, 1)[0], oldest) << w;
        EXPECT_EQ(read(kSize - 5, 0, 1)[0], newest) << w;
        EXPECT_EQ(read(kSize - 4, 0, 1)[0], oldest) << w;
        EXPECT_EQ(read(kSize - 1, 0, 1)[0], static_cast<float>(w < 1017 ? w + 3 : w + 7)) << w;
    }
}

TEST_F(LiveSeam, IsCrossedFrameByFrameBothWays) {
    wave.initLiveBuffer_andSamplingRate(kSize, 44100.0);
    wave.startLiveTimer();
    writeRamp(0, kSize + 500); // the oldest frame is 500, the newest 1523
    // Up over the newest, three frames more, and from position 0 again.
    EXPECT_EQ(read(1018, 1, 9),
              (std::vector<float>{1522, 1523, 500, 501, 502, 503, 500, 501, 502}));
    EXPECT_EQ(read(1, -1, 7), (std::vector<float>{501, 500, 503, 502, 501, 500, 1523}));
    // Where the buffer's memory ends its last four frames are left out.
    EXPECT_EQ(read(517, 1, 5), (std::vector<float>{1017, 1018, 1019, 1024, 1025}));
}

} // namespace
} // namespace zephyra
