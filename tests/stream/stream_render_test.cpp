// One render cycle after another: live input in, grains out.

#include "stream/output_levels.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

#include <atomic>
#include <optional>
#include <thread>

namespace zephyra {
namespace {

/// A stream of dense grains that are cut 50 ms behind the newest live frame.
struct LiveStream : TestStream {
    LiveStream() {
        controller.setDisplayed(ControlId::live, 1.0f);
        controller.engine().setRandomSeed(1234567);
        controller.setDisplayed(ControlId::density, 200.0f);
        controller.setDisplayed(ControlId::scanning, 0.0f);
        controller.setDisplayed(ControlId::scrubbingWave, 0.995f);
        controller.setDisplayed(ControlId::echoSwitch, 1.0f);
        controller.play();
    }
};

std::vector<float> noise(std::size_t frames) {
    const auto sample = noiseSample(frames, 44100.0f);
    return {sample->data.get(), sample->data.get() + frames};
}

/// The whole input through a live stream, in blocks of the lengths given, over and over.
StereoBlock renderLive(std::vector<float> input, std::vector<int> blocks, bool inPlace = false) {
    LiveStream stream;
    StereoBlock out(input.size());
    if (inPlace) out.left = out.right = input;
    for (std::size_t at = 0, n = 0; at < input.size(); ++n) {
        const int frames = std::min(blocks[n % blocks.size()], static_cast<int>(input.size() - at));
        const AudioBufferList output = out.from(at);
        const ChannelList separate{input.data() + at, input.data() + at};
        GranulatorProcessing(&stream.controller, frames, inPlace ? &output : &separate.list,
                             output);
        at += static_cast<std::size_t>(frames);
    }
    return out;
}

float peak(const std::vector<float>& values) {
    return std::transform_reduce(
        values.begin(), values.end(), 0.0f, [](float a, float b) { return std::max(a, b); },
        [](float value) { return std::abs(value); });
}

TEST(StreamRender, CutsGrainsFromLiveInputInPlaceOrNotAndInStepsOf4096Frames) {
    const auto input = noise(50000);
    EXPECT_EQ(peak(renderLive(std::vector<float>(44100), {512}).left), 0.0f);
    EXPECT_GT(peak(renderLive(input, {512}).left), 0.1f);
    // A grain keeps the write index it was started with, so live sound depends on the blocks.
    const std::pair<std::vector<int>, std::vector<int>> cases[] = {{{64}, {64}},
                                                                   {{10000}, {4096, 4096, 1808}}};
    for (const auto& [blocks, sameAs] : cases)
        for (const bool inPlace : {false, true}) {
            const StereoBlock got = renderLive(input, blocks, inPlace);
            const StereoBlock expected = renderLive(input, sameAs);
            EXPECT_EQ(got.left, expected.left) << blocks[0] << inPlace;
            EXPECT_EQ(got.right, expected.right) << blocks[0] << inPlace;
        }
}

TEST(StreamRender, ReadsLiveInputFineAtMost) {
    using enum GrainQuality;
    LiveStream stream;
    const auto given = [&] { return StreamProbe::taps(stream->engine()); };
    for (const auto& [asked, live] : {std::pair(best, fine), {fine, fine}, {classic, classic}}) {
        stream->setQuality(asked);
        EXPECT_EQ(given(), GrainTapSet::of(live));
        stream->ui_enableLiveInput();
        EXPECT_EQ(given(), GrainTapSet::of(asked));
        stream->ui_enableLiveInput();
        EXPECT_EQ(given(), GrainTapSet::of(live));
        EXPECT_EQ(stream->quality(), asked);
    }
}

TEST(StreamRender, HoldsLiveSoundAsIfTheInputHadEndedForAsLongAsFreezeIsOn) {
    const auto input = noise(441 * 1200); // more than live input keeps
    constexpr auto freeze = &MOK_SCRUB_GRANULATOR::ui_freeze;
    constexpr auto live = &MOK_SCRUB_GRANULATOR::ui_enableLiveInput;
    constexpr auto clear = &MOK_SCRUB_GRANULATOR::ui_liveClear;
    using Acts = std::vector<std::pair<int, void (MOK_SCRUB_GRANULATOR::*)(Control*)>>; // by block
    const auto render = [&](const Acts& acts) {
        LiveStream stream;
        StereoBlock out(input.size());
        std::vector<float> in = input;
        for (int block = 0; block < 1200; ++block) {
            for (const auto& [at, act] : acts)
                if (at == block) (stream.controller.*act)(nullptr);
            const auto first = static_cast<std::size_t>(block) * 441;
            const ChannelList list{in.data() + first};
            GranulatorProcessing(&stream.controller, 441, &list.list, out.from(first));
        }
        return out.left;
    };
    const auto ended = render({{50, live}});
    EXPECT_NE(ended, render({}));
    for (const Acts& acts :
         {Acts{{50, live}, {60, freeze}}, Acts{{50, freeze}, {60, live}, {61, live}},
          Acts{{50, freeze}, {60, clear}}, Acts{{50, freeze}, {50, freeze}, {50, freeze}}})
        EXPECT_EQ(render(acts), ended) << acts.size();
}

TEST(StreamRender, RestsOnSilentInputOnlyWhenTheSoundBeforeItHasEnded) {
    LiveStream stream;
    stream->setDisplayed(ControlId::echoSwitch, 0.0f);
    StereoBlock out(WaveForm::kLiveFrames), silence(WaveForm::kLiveFrames);
    const auto render = [&](int frames) {
        const AudioBufferList input = silence.from(0);
        GranulatorProcessing(&stream.controller, frames, &input, out.from(0));
        return GranulatorRests(&stream.controller);
    };
    EXPECT_TRUE(render(WaveForm::kLiveFrames));
    stream->loadSound(noiseSample(44100, 44100.0f));
    EXPECT_FALSE(render(4410));
    stream->ui_enableLiveInput();
    EXPECT_FALSE(GranulatorRests(&stream.controller));
    EXPECT_FALSE(render(440));
    EXPECT_TRUE(render(1));
}

TEST(StreamRender, ShowsTheNewestOutputToAnOscilloscopeThatSomebodyWatches) {
    TestStream stream;
    stream->loadSound(noiseSample(44100, 44100.0f));
    stream->play();
    StereoBlock out(10000);
    std::vector<float> seen(Oscilloscope::kFrames);
    for (const bool watched : {false, true}) {
        std::optional<WatchCount::Watcher> one, other;
        if (watched) {
            one.emplace(stream->oscilloscope().watchers);
            other.emplace(stream->oscilloscope().watchers);
            one.reset(); // one of two windows closes
        }
        GranulatorProcessing(&stream.controller, 10000, nullptr, out.from(0));
        stream->oscilloscope().newest(1, seen);
        EXPECT_EQ(std::equal(seen.rbegin(), seen.rend(), out.right.rbegin()), watched);
    }
    EXPECT_GT(peak(seen), 0.0f);
}

TEST(StreamRender, TellsEachMeterThatLooksTheLevelsSinceItsLastReading) {
    OutputLevels levels;
    std::vector<float> left(6000, 0.5f), right(6000);
    right[300] = -1.5f;
    right[4000] = NAN;
    const ChannelList list{left.data(), right.data()};
    levels.add(list.list, 6000);
    EXPECT_EQ(levels.newest(), 0u); // nobody looks
    {
        const ChannelList loud{right.data() + 4000, right.data() + 4000};
        const WatchCount::Watcher before(levels.watchers); // who leaves in the middle of a piece
        levels.add(loud.list, 100);
    }
    levels.add(list.list, 64);
    const WatchCount::Watcher watcher(levels.watchers);
    OutputLevels::Place often = levels.newest(), seldom = often;
    for (int first = 0, n = 0; first < 6000; ++n) {
        const int frames = std::min(1 + n * 7 % 300, 6000 - first);
        const ChannelList block{left.data() + first, right.data() + first};
        levels.add(block.list, static_cast<std::uint32_t>(frames));
        first += frames;
        if (n != 3) continue; // 46 frames are not a piece
        EXPECT_EQ(levels.read(often).frames, 0u);
    }
    const LevelReading all = levels.read(seldom);
    EXPECT_EQ(all.frames, 6000u / 256 * 256);
    EXPECT_EQ(all.channels[0].peak, 0.5f);
    EXPECT_NEAR(all.channels[0].meanSquare, 0.25f, 1e-6f);
    EXPECT_EQ(all.channels[1].peak, OutputLevels::kMostLevel);
    EXPECT_TRUE(all.channels[1].clipped && !all.channels[0].clipped);
    EXPECT_EQ(levels.read(seldom).frames, 0u);
    levels.add(list.list, 1024);
    EXPECT_EQ(levels.read(seldom).channels[1].peak, 1.5f);
    EXPECT_EQ(levels.read(often).frames, 6000u / 256 * 256 + 1024);
}

TEST(StreamRender, ShowsGrainsToWhoeverComesAndGoesWhileItRenders) {
    TestStream stream, unseen;
    for (TestStream* each : {&stream, &unseen}) {
        each->controller.loadSound(noiseSample(44100, 44100.0f));
        each->controller.setDisplayed(ControlId::density, 200.0f);
        each->controller.engine().setRandomSeed(1234567);
        each->controller.play();
    }
    std::atomic<bool> renders = true;
    std::atomic<std::size_t> seen = 0;
    bool same = true;
    std::thread render([&] {
        StereoBlock out(64), expected(64);
        // A busy machine looks seldom.
        for (int block = 0; block < 4000 || (seen <= 10 && block < 40'000); ++block) {
            GranulatorProcessing(&stream.controller, 64, nullptr, out.from(0));
            GranulatorProcessing(&unseen.controller, 64, nullptr, expected.from(0));
            same = same && out.left == expected.left && out.right == expected.right;
        }
        renders = false;
    });
    while (renders) {
        GrainWatch::Watcher other(stream->grainWatch()); // sees all that one, who comes later, does
        const GrainWatch::Watcher idle(stream->grainWatch());
        GrainWatch::Watcher one(stream->grainWatch());
        std::vector<std::uint64_t> frames;
        for (int look = 0; look < 100; ++look, std::this_thread::yield())
            for (GrainRecord grain, others; one.take(grain);) {
                EXPECT_TRUE(frames.empty() || grain.frame > frames.back());
                EXPECT_LT(grain.frame, stream->engine().renderedFrames() + 64);
                frames.push_back(grain.frame);
                // At once: of a watcher who takes none, the oldest go.
                bool isThere = other.take(others);
                while (isThere && others.frame < grain.frame) isThere = other.take(others);
                EXPECT_TRUE(isThere && others.frame == grain.frame);
            }
        seen += frames.size();
    }
    render.join();
    EXPECT_TRUE(same);
    EXPECT_GT(seen, 10u);
    stream->collect();
    EXPECT_EQ(stream->grainWatch().waitingObjects(), 0u);
}

TEST(StreamRender, FollowsANewRateLiveInputTooAndIsSilentWhereAnEchoStillRang) {
    LiveStream stream;
    stream->setDisplayed(ControlId::ringModulationSwitch, 1.0f);
    std::vector<float> in = noise(44100);
    const ChannelList list{in.data(), in.data()};
    StereoBlock out(44100);
    const AudioBufferList output = out.from(0);
    GranulatorProcessing(&stream.controller, 44100, &list.list, output);
    stream->stop();
    GranulatorProcessing(&stream.controller, 4096, nullptr, output);
    EXPECT_GT(peak({out.left.begin(), out.left.begin() + 4096}), 0.0f);
    stream.instance.session.sampleRate = 48000.0;
    stream->prepare(48000.0);
    EXPECT_EQ(stream->waveForm().liveSample()->sampleRate, 48000.0f);
    GranulatorProcessing(&stream.controller, 44100, nullptr, output);
    EXPECT_EQ(peak(out.left), 0.0f);
}

} // namespace
} // namespace zephyra
