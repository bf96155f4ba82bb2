// Echo and ring modulator switched while they sound: no step, the literal loop's bits, no stale
// tail.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/granular_stream.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/block_partition.h"
#include "tests/support/literal_effects.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

#include <numbers>

namespace zephyra {
namespace {

constexpr float kRate = 44100.0f;
constexpr int kSecond = 44100;

using Switch = Relaxed<bool> mokGranulatorSF::*;

/// One grain without an envelope, so that the sound is heard as it is.
struct Heard {
    std::shared_ptr<mokSample> sound;
    mokWindow window{mokWindow::kPoints, kWindowRectangular};
    mokGranulatorSF engine;

    explicit Heard(std::shared_ptr<mokSample> given)
        : sound(std::move(given)), engine(sound.get(), &window, 1, kRate, 1) {
        engine.granularOn = true;
        engine.setDensity(0);
        engine.setLength(1e6f);
        engine.setRndLength(0);
        engine.setJittering(0);
        RM::setparameter(engine.ringModulatorModule(), RM::kDryWet, 1);
        RM::setparameter(engine.ringModulatorModule(), RM::kFreq, 300);
    }

    StereoBlock render(int frames) {
        StereoBlock block(static_cast<std::size_t>(frames));
        engine.GranularStreamProcessing(frames, block.from(0));
        return block;
    }
};

std::shared_ptr<mokSample> sine(double hertz) {
    auto sample = std::make_shared<mokSample>(30ul * kSecond, kRate);
    for (std::uint64_t n = 0; n < sample->size; ++n)
        sample->data[n] = static_cast<float>(
            std::sin(2 * std::numbers::pi * hertz * static_cast<double>(n) / double{kRate}));
    return sample;
}

float largestStep(const StereoBlock& block) {
    float largest = 0;
    for (const auto* side : {&block.left, &block.right})
        for (std::size_t n = 1; n < side->size(); ++n)
            largest = std::max(largest, std::abs((*side)[n] - (*side)[n - 1]));
    return largest;
}

TEST(StageSwitches, MakeNoStepOnASine) {
    const struct {
        const char* name;
        Switch stage;
    } stages[] = {{"echo", &mokGranulatorSF::echoOn}, {"ring", &mokGranulatorSF::ringOn}};
    for (const auto& [name, stage] : stages)
        for (double hertz : {110.0, 440.0, 997.0}) {
            Heard heard(sine(hertz));
            (heard.engine.*stage) = true;
            heard.render(4 * kSecond); // times and amounts have come to rest
            for (int turn = 0; turn < 6; ++turn) {
                const bool on = turn % 2;
                SCOPED_TRACE(testing::Message() << name << (on ? " on, " : " off, ") << hertz);
                StereoBlock block(2 * kSecond);
                heard.engine.GranularStreamProcessing(kSecond / 2 + turn * 17, block.from(0));
                StereoBlock before = block;
                for (auto* side : {&before.left, &before.right}) side->resize(kSecond / 2);
                (heard.engine.*stage) = on;
                const std::size_t at = kSecond / 2 + static_cast<std::size_t>(turn) * 17;
                heard.engine.GranularStreamProcessing(2 * kSecond - static_cast<int>(at),
                                                      block.from(at));
                const float still =
                    std::max(largestStep(before), largestStep(heard.render(kSecond)));
                EXPECT_LE(largestStep(block), 1.1f * still);
            }
        }
}

/// A switch that fades, walked frame by frame: how far it has come, of the 441 frames of 10 ms.
struct LiteralFade {
    int place;

    bool standsAt(bool on) const { return place == (on ? 441 : 0); }
    float next(bool on) {
        place = std::clamp(place + (on ? 1 : -1), 0, 441);
        const float t = static_cast<float>(place) / 441.0f;
        return t * t * (3.0f - 2.0f * t);
    }
};

/// Both effects frame by frame; an echo that has faded out is cleared.
struct LiteralStages {
    LiteralFade echoFade{}, ringFade{};
    LiteralEcho echo[2] = {{.targetTime = 13230, .targetFeedback = double{0.341f}},
                           {.targetTime = 11025, .targetFeedback = double{0.231f}}};
    LiteralRing ring{.increment = 300.0 / 44100, .targetAmount = 1};

    void jump(bool echoes, bool rings) {
        echoFade.place = echoes ? 441 : 0;
        ringFade.place = rings ? 441 : 0;
        if (!echoes) clearLines();
    }
    void clearLines() {
        for (LiteralEcho& side : echo) std::fill(side.line.begin(), side.line.end(), 0.0);
    }

    void operator()(bool echoes, bool rings, float* frame) {
        if (echoes || !echoFade.standsAt(false)) {
            const bool fades = !echoFade.standsAt(echoes);
            const float gain = echoFade.next(echoes);
            for (int side = 0; side < 2; ++side) {
                const float dry = frame[side], wet = echo[side](gain * dry);
                frame[side] = fades ? dry + gain * (wet - gain * dry) : wet;
            }
            if (gain == 0) clearLines();
        }
        if (rings || !ringFade.standsAt(false)) {
            const bool fades = !ringFade.standsAt(rings);
            const float gain = ringFade.next(rings), dry[2] = {frame[0], frame[1]};
            ring(dry, frame);
            for (int side = 0; side < 2 && fades; ++side)
                frame[side] = dry[side] + gain * (frame[side] - dry[side]);
        }
    }
};

TEST(StageSwitches, FadeAsTheLiteralLoopDoesWhateverTheBlocks) {
    using namespace delay_stereo_forward;
    constexpr int kFrames = 12 * kSecond;
    for (int longest : {1, 64, 480, 4096}) {
        SCOPED_TRACE(longest);
        std::mt19937 random(static_cast<std::uint32_t>(longest));
        const auto noise = [] { return noiseSample(20ul * kSecond, kRate); };
        Heard heard(noise()), dry(noise());
        bool echoes = longest == 64, rings = longest == 480;
        LiteralStages literal;
        literal.jump(echoes, rings);
        int left = 0; // frames until a switch is turned, often within a fade
        const FlushDenormals flush;
        for (int block : randomPartition(kFrames, longest, 3)) {
            heard.engine.echoOn = echoes;
            heard.engine.ringOn = rings;
            const StereoBlock got = heard.render(block);
            StereoBlock expected = dry.render(block);
            for (std::size_t n = 0; n < got.left.size(); ++n) {
                float frame[2] = {expected.left[n], expected.right[n]};
                literal(echoes, rings, frame);
                ASSERT_EQ(got.left[n], frame[0]) << heard.engine.renderedFrames() << ' ' << n;
                ASSERT_EQ(got.right[n], frame[1]) << heard.engine.renderedFrames() << ' ' << n;
            }
            if ((left -= block) > 0) continue;
            left = static_cast<int>(random() % (random() % 3 ? 600 : kSecond));
            (random() % 2 ? echoes : rings) ^= true;
            literal.echo[0].targetTime = static_cast<double>(random() % 100000);
            setparameter(heard.engine.echoModule(), kTimeL, literal.echo[0].targetTime);
            if (random() % 5) continue;
            for (Heard* each : {&heard, &dry}) each->engine.startAnew();
            literal.jump(echoes, rings);
        }
    }
}

TEST(StageSwitches, LeaveAnEchoEmptyAndLetItRest) {
    Heard heard(noiseSample(kSecond, kRate));
    heard.engine.echoOn = true;
    heard.render(8 * kSecond); // its times have settled
    heard.engine.endGrains();
    heard.engine.granularOn = false;
    EXPECT_FALSE(heard.engine.effectsRest());
    EXPECT_GT(largestStep(heard.render(1000)), 0.0f); // its repeats
    heard.engine.echoOn = false;
    EXPECT_FALSE(heard.engine.effectsRest()); // it fades
    heard.render(440);
    EXPECT_FALSE(heard.engine.effectsRest());
    heard.render(1);
    EXPECT_TRUE(heard.engine.effectsRest());
    heard.engine.echoOn = true;
    EXPECT_FALSE(heard.engine.effectsRest());
    const StereoBlock back = heard.render(kSecond);
    for (std::size_t n = 0; n < back.left.size(); ++n)
        ASSERT_TRUE(back.left[n] == 0 && back.right[n] == 0) << n;
    EXPECT_TRUE(heard.engine.effectsRest());
}

} // namespace
} // namespace zephyra
