// OfflineRender against the engine called by hand, and how long the echo is waited for.

#include "engine/envelope_menu.h"
#include "rendering/echo_tail.h"
#include "rendering/offline_render.h"
#include "rendering/render_plan.h"

#include <cmath>
#include <gtest/gtest.h>

namespace zephyra {
namespace {

std::shared_ptr<mokSample> makeSource() {
    auto source = std::make_shared<mokSample>(20000, 44100.0f);
    for (std::uint64_t n = 0; n < source->size; ++n)
        source->getPtr()[n] = std::sin(static_cast<float>(n) * 0.07f);
    source->writeGuardPoint();
    return source;
}

TEST(OfflineRender, GivesTheEnginesOwnSamplesBlockForBlock) {
    const std::shared_ptr<mokSample> source = makeSource();
    RenderPlan plan{.sampleRate = 48000,
                    .playFrames = 10000,
                    .frames = 10000,
                    .blockFrames = 300,
                    .seed = 77,
                    .envelope = kDefaultEnvelope,
                    .settings = {{ControlId::pitch, 7}, {ControlId::density, 200}},
                    .timedSettings = {{0.1, {ControlId::width, 1}}}, // frame 4800: block 16
                    .start = 0.25f,
                    .end = 0.5f,
                    .host = {.fadeIn = 0.0}};
    std::vector<float> left, right;
    OfflineRender render(plan, Folders{});
    ASSERT_TRUE(render.prepare({.sample = source}));
    ASSERT_TRUE(render.run([&](const RenderedBlock& block) -> Result<void> {
        EXPECT_EQ(block.firstFrame, left.size());
        left.insert(left.end(), block.left, block.left + block.frames);
        right.insert(right.end(), block.right, block.right + block.frames);
        return {};
    }));
    ASSERT_EQ(left.size(), 10000u);

    RandomSource random;
    const std::shared_ptr<mokWindow> window = makeEnvelope(kDefaultEnvelope, random);
    mokGranulatorSF engine(source.get(), window.get(), mokGranulatorSF::kVoices, 48000.0f, 77);
    // What is on a curve has its rounding.
    const auto curved = [](ControlId id, float displayed) {
        const ControlRange& range = controlRange(id);
        return displayedFromLinear(range, linearFromDisplayed(range, displayed));
    };
    engine.setLength(curved(ControlId::length, 85));
    engine.setJittering(curved(ControlId::jittering, 5));
    engine.setRndLength(0.5f);
    engine.setRndDensity(0.5f);
    engine.setPitch(7);
    engine.setDensity(curved(ControlId::density, 200));
    engine.setStart(0.25f);
    engine.setEnd(0.5f);
    engine.granularOn = true;
    for (int first = 0; first < 10000; first += 300) {
        if (first == 4800) engine.setWidth(1);
        std::vector<float> outL(300), outR(300);
        AudioBuffer buffers[2] = {{.mData = outL.data()}, {.mData = outR.data()}};
        const int frames = std::min(300, 10000 - first);
        engine.GranularStreamProcessing(frames, {.mNumberBuffers = 2, .mBuffers = buffers});
        for (int n = 0; n < frames; ++n) {
            ASSERT_EQ(left[static_cast<std::size_t>(first + n)], outL[static_cast<std::size_t>(n)])
                << "frame " << first + n;
            ASSERT_EQ(right[static_cast<std::size_t>(first + n)], outR[static_cast<std::size_t>(n)])
                << "frame " << first + n;
        }
    }
}

TEST(OfflineRender, InTheTailNoGrainStartsAndNothingBreaksOff) {
    RenderPlan plan{.sampleRate = 44100,
                    .playFrames = 5000,
                    .frames = 15000,
                    .blockFrames = 512,
                    .seed = 5,
                    .envelope = kDefaultEnvelope,
                    .settings = {{ControlId::density, 400}},
                    .timedSettings = {{0.2, {ControlId::amplitude, 1}}}, // in the tail
                    .start = {}};
    std::vector<float> left;
    std::uint64_t grains = 0;
    OfflineRender render(plan, Folders{});
    ASSERT_TRUE(render.prepare({.sample = makeSource()}));
    const auto statistics = render.run([&](const RenderedBlock& block) -> Result<void> {
        left.insert(left.end(), block.left, block.left + block.frames);
        grains += block.grains.size();
        for (const GrainRecord& grain : block.grains) EXPECT_LT(grain.frame, 5000u);
        return {};
    });
    ASSERT_TRUE(statistics);
    EXPECT_EQ(statistics.value().startedGrains + statistics.value().droppedGrains, grains);
    // Grains last at most 85 ms and a quarter more; none steps to silence at once.
    const auto at = [&left](std::size_t frame) { return std::abs(left[frame]); };
    float loud = 0, silent = 0;
    for (std::size_t n = 5000; n < 5500; ++n) loud = std::max(loud, at(n));
    for (std::size_t n = 5000 + 4686; n < 15000; ++n) silent = std::max(silent, at(n));
    EXPECT_GT(loud, 0.1f);
    EXPECT_EQ(silent, 0.0f);
}

TEST(RenderPlan, LengthRateAndSeedComeFromTheSourceAndTheClock) {
    RenderRequest request;
    const SoundFileInfo source{.format = "", .channels = 1, .sampleRate = 22050, .frames = 11025};
    Clock clock;
    clock.fix(1234567);
    const auto own = makeRenderPlan(request, source, clock);
    ASSERT_TRUE(own);
    EXPECT_EQ(own.value().sampleRate, 22050);
    EXPECT_EQ(own.value().frames, 11025u);
    EXPECT_EQ(own.value().seed, 1234567u);
    clock.fix(0);
    EXPECT_EQ(makeRenderPlan(request, source, clock).value().seed, 1u);

    request.sampleRate = 44100;
    EXPECT_EQ(makeRenderPlan(request, source, clock).value().frames, 22050u);
    EXPECT_TRUE(checkInputRate(request, source));
    request.host.type = component_type::effect;
    EXPECT_FALSE(checkInputRate(request, source));
}

TEST(EchoTail, LastsUntilEveryRepeatIsSixtyDecibelsDown) {
    const struct {
        EchoSide left, right;
        double rate, seconds;
    } cases[] = {
        {{0.5, 0}, {0.25, 0}, 44100, 0.5},              // one repeat each
        {{0.5, 0.11}, {0.25, 0}, 44100, 2.0},           // 1, 0.11, 0.0121, 0.00133
        {{0.1, 0.5}, {0.25, 0}, 44100, 1.0},            // 0.5 to the power of 9 is above 0.001
        {{0.1, 0}, {0.25, 0.2}, 44100, 1.25},           // 0.2 to the power of 4 is above 0.001
        {{0.5, 0}, {0.25, 0}, 22050, 1.0},              // the same samples take twice the time
        {{4.6, 0}, {0.25, 0}, 44100, 200000 / 44100.0}, // the echo's longest delay
        {{4.5, 0.98}, {0.25, 0}, 44100, kLongestEchoTail},
    };
    for (const auto& one : cases)
        EXPECT_DOUBLE_EQ(echoTail(one.left, one.right, one.rate), one.seconds)
            << one.left.delay << " " << one.left.gain;
}

} // namespace
} // namespace zephyra
