// One render cycle after another: live input in, grains out.

#include "platform/realtime.h"
#include "tests/support/render_guard.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace zephyra {
namespace {

std::vector<float> noise(std::size_t frames) {
    std::mt19937 random(3);
    std::vector<float> values(frames);
    for (float& value : values) value = static_cast<float>(random() % 2001) * 1e-3f - 1.0f;
    return values;
}

/// A stream of dense grains that are cut 50 ms behind the newest live frame.
std::unique_ptr<TestStream> liveStream() {
    auto stream = std::make_unique<TestStream>();
    stream->controller.enableLive(true);
    stream->controller.engine().setRandomSeed(1234567);
    stream->controller.setControl(ControlId::density, 200.0f);
    stream->controller.setControl(ControlId::scanning, 0.0f);
    stream->controller.setControl(ControlId::scrubbingWave, 0.995f);
    stream->controller.setControl(ControlId::echoSwitch, 1.0f);
    stream->controller.play(true);
    return stream;
}

/// The whole input through a live stream, in blocks of at most longest frames.
StereoBlock renderLive(const std::vector<float>& input, int longest, bool inPlace = false) {
    const auto stream = liveStream();
    StereoBlock out(input.size());
    if (inPlace) {
        out.left = input;
        out.right = input;
    }
    std::vector<float> in0 = input, in1 = input;
    const auto frames = static_cast<int>(input.size());
    for (int done = 0; done < frames; done += longest) {
        const auto at = static_cast<std::size_t>(done);
        const AudioBufferList output = out.from(at);
        const ChannelList separate{in0.data() + at, in1.data() + at};
        GranulatorProcessing(&stream->controller, std::min(longest, frames - done),
                             inPlace ? &output : &separate.list, output);
    }
    return out;
}

float peak(const std::vector<float>& values) {
    float most = 0.0f;
    for (const float value : values) most = std::max(most, std::abs(value));
    return most;
}

TEST(StreamRender, DoesNothingWithoutAControllerAndWorksOnTheRecordOfOne) {
    StereoBlock out(4);
    out.left[0] = 5.0f;
    GranulatorProcessing(nullptr, 4, nullptr, out.from(0));
    EXPECT_EQ(out.left[0], 5.0f);
    EXPECT_EQ(getGranularData(nullptr), nullptr);
    TestStream stream;
    EXPECT_EQ(getGranularData(&stream.controller)->engine, &stream->engine());
    EXPECT_EQ(getGranularData(&stream.controller)->waveform, &stream->waveForm());
}

TEST(StreamRender, CutsGrainsFromLiveInput) {
    EXPECT_EQ(peak(renderLive(std::vector<float>(44100, 0.0f), 512).left), 0.0f);
    EXPECT_GT(peak(renderLive(noise(44100), 512).left), 0.1f);
}

TEST(StreamRender, AlternatesWritingAndRenderingInALongBlock) {
    // A grain keeps the write index it was started with, so live sound depends on the blocks; one
    // of 10000 frames is heard as 4096, 4096 and 1808.
    const auto input = noise(50000);
    const auto stream = liveStream();
    StereoBlock expected(input.size());
    std::vector<float> in = input;
    for (std::size_t at = 0; at < in.size();)
        for (const int frames : {4096, 4096, 1808}) {
            const ChannelList list{in.data() + at, in.data() + at};
            GranulatorProcessing(&stream->controller, frames, &list.list, expected.from(at));
            at += static_cast<std::size_t>(frames);
        }
    const StereoBlock got = renderLive(input, 10000);
    EXPECT_EQ(got.left, expected.left);
    EXPECT_EQ(got.right, expected.right);
}

TEST(StreamRender, MayWriteOverItsInput) {
    const auto input = noise(30000);
    for (const int longest : {64, 4096, 30000}) {
        const StereoBlock apart = renderLive(input, longest),
                          inPlace = renderLive(input, longest, true);
        EXPECT_EQ(apart.left, inPlace.left) << longest;
        EXPECT_EQ(apart.right, inPlace.right) << longest;
    }
}

TEST(StreamRender, ShowsTheFinishedOutputToTheOscilloscope) {
    struct Screen : Oscilloscope {
        std::vector<float> left = std::vector<float>(20000);
        std::size_t seen = 0;
        void OscilloscopeAddAudio(const AudioBufferList& list,
                                  int frames) ZEPHYRA_NONBLOCKING override {
            std::copy_n(list.floats(0), frames, left.data() + seen);
            seen += static_cast<std::size_t>(frames);
        }
    } screen;
    TestStream stream;
    stream->loadSound(noiseSample(44100, 44100.0f));
    stream->play(true);
    stream->setOscilloscope(&screen);
    StereoBlock out(10000);
    GranulatorProcessing(&stream.controller, 10000, nullptr, out.from(0));
    ASSERT_EQ(screen.seen, 10000u);
    screen.left.resize(10000);
    EXPECT_EQ(screen.left, out.left);
    EXPECT_GT(peak(out.left), 0.0f);
}

TEST(StreamRender, WritesLiveInputAlsoWhereNothingCanBeHeard) {
    const auto stream = liveStream();
    std::vector<float> in(100, 1.0f);
    const ChannelList list{in.data()};
    GranulatorProcessing(&stream->controller, 100, &list.list, ChannelList{in.data()}.list);
    EXPECT_EQ(stream->controller.waveForm().getWriteLiveIndex(), 100u);
    EXPECT_EQ(in[99], 1.0f);
}

TEST(StreamRender, KeepsLongGrainsInsideAMuchShorterSound) {
    TestStream stream;
    stream->play(true);
    stream->setControl(ControlId::length, 2000.0f);
    StereoBlock out(512);
    for (const std::uint64_t frames : {200000, 200, 50000, 16, 200000}) {
        stream->loadSound(noiseSample(frames, 44100.0f));
        for (int block = 0; block < 10; ++block)
            GranulatorProcessing(&stream.controller, 512, nullptr, out.from(0));
        EXPECT_LE(peak(out.left), 24.0f);
    }
}

TEST(StreamRender, IsSilentAfterANewRateWhereAnEchoStillRang) {
    const auto stream = liveStream();
    std::vector<float> in = noise(44100);
    const ChannelList list{in.data()};
    StereoBlock out(44100);
    GranulatorProcessing(&stream->controller, 44100, &list.list, out.from(0));
    stream->controller.play(false);
    GranulatorProcessing(&stream->controller, 4096, nullptr, out.from(0));
    EXPECT_GT(peak({out.left.begin(), out.left.begin() + 4096}), 0.0f);
    stream->controller.prepare(48000.0);
    GranulatorProcessing(&stream->controller, 44100, nullptr, out.from(0));
    EXPECT_EQ(peak(out.left), 0.0f);
}

TEST(StreamRender, NeitherAllocatesNorWaits) {
    if (!RenderGuard::isActive()) GTEST_SKIP() << "sanitizers watch in its place";
    const auto stream = liveStream();
    stream->controller.setControl(ControlId::ringModulationSwitch, 1.0f);
    std::vector<float> in = noise(10000);
    const ChannelList list{in.data(), in.data()};
    StereoBlock out(10000);
    const AudioBufferList output = out.from(0);
    std::uint32_t offences = 0;
    std::string first;
    {
        const RenderGuard guard;
        GranulatorProcessing(&stream->controller, 10000, &list.list, output);
        offences = guard.total();
        first = guard.firstOffender();
    }
    EXPECT_EQ(offences, 0u) << first;
}

} // namespace
} // namespace zephyra
