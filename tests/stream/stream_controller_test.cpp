// What the stream controller hands to its engine: controls, sounds, envelopes and live input.

#include "stream/stream_controller.h"

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/envelope_menu.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace zephyra {
namespace {

namespace echo = delay_stereo_forward;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// A sound of frames at rate whose only frame that is not silent is peak.
std::shared_ptr<mokSample> spike(std::uint64_t frames, float rate, float peak) {
    auto sound = std::make_shared<mokSample>(frames, rate);
    sound->data[1] = peak;
    sound->writeGuardPoint();
    return sound;
}

StreamProbe::Fields fields(TestStream& stream) {
    return StreamProbe::fields(stream->engine());
}

TEST(StreamControl, ReachesTheEngineFieldOrModuleParameterItIsFor) {
    const auto echoParameter = [](TestStream& s, int i) {
        return echo::getparameter(s->engine().echoModule(), i);
    };
    const auto ringParameter = [](TestStream& s, int i) {
        return RM::getparameter(s->engine().ringModulatorModule(), i);
    };
    const struct {
        ControlId id;
        float value;
        std::function<double(TestStream&)> reached;
        double expected;
    } cases[] = {
        {ControlId::amplitude, 0.75f, [](TestStream& s) { return fields(s).level; }, 0.75},
        {ControlId::pan, -1.0f, [](TestStream& s) { return fields(s).panB; }, 0.0},
        {ControlId::width, 0.5f, [](TestStream& s) { return fields(s).width; }, 0.5},
        {ControlId::density, 100.0f, [](TestStream& s) { return fields(s).density; }, 100.0},
        {ControlId::rndDensity, 1.0f, [](TestStream& s) { return fields(s).rndDensity; }, 0.5},
        {ControlId::length, 250.0f, [](TestStream& s) { return fields(s).grainLength; }, 0.25},
        {ControlId::rndLength, 1.0f, [](TestStream& s) { return fields(s).rndLength; }, 0.5},
        {ControlId::pitch, 12.0f, [](TestStream& s) { return fields(s).playbackRate; }, 0.5},
        {ControlId::rndPitch, 12.0f, [](TestStream& s) { return fields(s).rndPitch; }, 0.5},
        {ControlId::scanning, -2.0f, [](TestStream& s) { return fields(s).scanFrequency; }, -0.5},
        {ControlId::jittering, 500.0f, [](TestStream& s) { return fields(s).jitter; }, 0.125},
        {ControlId::echoSwitch, 0.4f, [](TestStream& s) { return s->engine().echoOn.load(); }, 1},
        {ControlId::leftDelay, 0.5f, [&](TestStream& s) { return echoParameter(s, 0); }, 22050},
        {ControlId::rightDelay, 4.5f, [&](TestStream& s) { return echoParameter(s, 1); }, 198450},
        {ControlId::leftGain, 0.75f, [&](TestStream& s) { return echoParameter(s, 3); }, 0.75},
        {ControlId::rightGain, 0.25f, [&](TestStream& s) { return echoParameter(s, 2); }, 0.25},
        {ControlId::ringModulationSwitch, 1.0f,
         [](TestStream& s) { return s->engine().ringOn.load(); }, 1},
        {ControlId::ringModulationFrequency, 500.0f,
         [&](TestStream& s) { return ringParameter(s, RM::kFreq); }, 500},
        {ControlId::ringModulationAmount, 1.0f,
         [&](TestStream& s) { return ringParameter(s, RM::kDryWet); }, 1},
    };
    TestStream stream;
    ASSERT_TRUE(stream->loadSound(spike(40000, 10000.0f, 1.0f))); // 4 s
    for (const auto& c : cases) {
        const char* name = controlRange(c.id).name;
        EXPECT_NE(c.reached(stream), c.expected) << name;
        ASSERT_TRUE(stream->setControl(c.id, c.value)) << name;
        EXPECT_NEAR(c.reached(stream), c.expected, 1e-7) << name;
        EXPECT_EQ(stream->control(c.id), c.value == 0.4f ? 1.0f : c.value) << name;
    }
    EXPECT_EQ(stream->engine().echoTimeL, 500.0f);
    EXPECT_EQ(stream->engine().echoTimeR, 4500.0f);
    EXPECT_EQ(stream->engine().echoGainL, 0.75f);
    EXPECT_EQ(stream->engine().echoGainR, 0.25f);
}

TEST(StreamControl, OfTheWaveMovesTheScan) {
    TestStream stream;
    stream->play(true);
    stream->setControl(ControlId::scanning, 0.0f);
    ASSERT_TRUE(stream->setControl(ControlId::scrubbingWave, 0.75f));
    StereoBlock out(64);
    GranulatorProcessing(&stream.controller, 64, nullptr, out.from(0));
    EXPECT_EQ(stream->engine().currentScanPosition(), 0.75f);
}

TEST(StreamControl, StartsAtTheDefaultsOfTheTable) {
    TestStream stream;
    for (const ControlRange& range : controlRanges())
        EXPECT_EQ(stream->control(range.id), range.defaultValue) << range.name;
    CommonState* const module = stream->engine().echoModule();
    EXPECT_NEAR(echo::getparameter(module, echo::kTimeL), 13230.0, 1e-9);
    EXPECT_NEAR(echo::getparameter(module, echo::kTimeR), 11025.0, 1e-9);
    EXPECT_EQ(RM::getparameter(stream->engine().ringModulatorModule(), RM::kFreq), 220.0);
    EXPECT_EQ(RM::getparameter(stream->engine().ringModulatorModule(), RM::kDryWet), 0.5);
}

TEST(StreamControl, IsRefusedOutsideItsRangeOrWhereTheStreamHasNone) {
    const struct {
        ControlId id;
        float value;
    } cases[] = {
        {ControlId::amplitude, 1.01f},   {ControlId::pan, kNaN},       {ControlId::density, 0.4f},
        {ControlId::leftDelay, 0.0f},    {ControlId::envelope, 12.0f}, {ControlId::envelope, 1.5f},
        {ControlId::dryWet, 50.0f},      {ControlId::measures, 1.0f},  {ControlId::quarters, 4.0f},
        {ControlId::subdivisions, 7.0f}, {ControlId::fadeIn, 0.1f},    {ControlId::fadeOut, 0.1f},
    };
    TestStream stream;
    const auto before = fields(stream);
    for (const auto& c : cases) {
        const float value = stream->control(c.id);
        EXPECT_FALSE(stream->setControl(c.id, c.value)) << controlRange(c.id).name;
        EXPECT_EQ(stream->control(c.id), value);
    }
    EXPECT_EQ(fields(stream), before);
}

TEST(StreamEnvelope, IsANewTableOfTheMenusShape) {
    TestStream stream;
    EXPECT_EQ(StreamProbe::window(stream->engine())->data[2048], 1.0f);
    for (std::size_t i = 0; i + 1 < kEnvelopeMenu.size(); ++i) { // all but the random one
        ASSERT_TRUE(stream->pickEnvelope(i));
        const auto expected = makeEnvelope(i);
        const mokWindow* const window = StreamProbe::window(stream->engine());
        EXPECT_TRUE(std::equal(window->getPtr(), window->getPtr() + 4096, expected->getPtr()));
        EXPECT_EQ(stream->control(ControlId::envelope), static_cast<float>(i));
    }
    EXPECT_FALSE(stream->pickEnvelope(kEnvelopeMenu.size()));
    EXPECT_FALSE(stream->pickEnvelope(std::numeric_limits<std::size_t>::max()));
    EXPECT_EQ(stream->waitingObjects(), 0u); // nobody renders: all is freed at once
}

TEST(StreamSound, KeepsPitchSpeedAndJitterOverAChangeOfSample) {
    TestStream stream;
    stream->setControl(ControlId::pitch, -12.0f);
    stream->setControl(ControlId::scanning, 2.0f);
    stream->setControl(ControlId::jittering, 100.0f);
    ASSERT_TRUE(stream->setRegion(0.25f, 0.75f));
    ASSERT_TRUE(stream->loadSound(spike(20000, 10000.0f, 1.0f))); // 2 s
    EXPECT_FLOAT_EQ(fields(stream).playbackRate, 0.25f);
    EXPECT_FLOAT_EQ(fields(stream).scanFrequency, 2.0f); // twice a second through half of it
    EXPECT_FLOAT_EQ(fields(stream).jitter, 0.05f);

    ASSERT_TRUE(stream->enableLive(true)); // 10 s
    EXPECT_FLOAT_EQ(fields(stream).playbackRate, 0.05f);
    EXPECT_FLOAT_EQ(fields(stream).scanFrequency, 0.4f);
    EXPECT_FLOAT_EQ(fields(stream).jitter, 0.01f);
}

TEST(StreamSound, IsNormalizedInACopyThatFollowsTheControl) {
    TestStream stream;
    const auto sound = spike(1000, 44100.0f, -0.25f);
    const auto played = [&] { return StreamProbe::sample(stream->engine())->data[1]; };
    ASSERT_TRUE(stream->loadSound(sound));
    EXPECT_EQ(played(), -1.0f);
    for (const float peak : {0.5f, 0.0f, 0.25f, 1.0f}) {
        ASSERT_TRUE(stream->setControl(ControlId::normalize, peak));
        EXPECT_EQ(played(), -peak);
        const mokSample* const now = StreamProbe::sample(stream->engine());
        EXPECT_EQ(now->data[now->size + 1], -peak) << "guard";
        EXPECT_EQ(now->sampleRate, 44100.0f);
    }
    EXPECT_EQ(sound->data[1], -0.25f);
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 0.0f)));
    EXPECT_EQ(played(), 0.0f);
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 1e-45f))); // no finite gain reaches 1
    EXPECT_TRUE(std::isfinite(played()));
}

TEST(StreamSound, IsRefusedWhenItCannotBePlayed) {
    TestStream stream;
    const mokSample* const before = StreamProbe::sample(stream->engine());
    EXPECT_FALSE(stream->loadSound(nullptr));
    EXPECT_FALSE(stream->loadSound(std::make_shared<mokSample>()));
    for (const float rate : {0.0f, -1.0f})
        EXPECT_FALSE(stream->loadSound(spike(1000, rate, 1.0f))) << rate;
    for (const float frame : {kNaN, std::numeric_limits<float>::infinity()})
        EXPECT_FALSE(stream->loadSound(spike(1000, 44100.0f, frame))) << frame;
    EXPECT_EQ(StreamProbe::sample(stream->engine()), before);
}

TEST(StreamSound, ComesBackWhenLiveInputGoesOff) {
    TestStream stream;
    const auto now = [&] { return StreamProbe::sample(stream->engine()); };
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 0.5f)));
    stream->setControl(ControlId::normalize, 0.5f);
    ASSERT_TRUE(stream->enableLive(true));
    EXPECT_EQ(now(), stream->waveForm().liveSample());
    EXPECT_EQ(stream->control(ControlId::normalize), 1.0f);
    EXPECT_EQ(stream->waveForm().data().normalizeGain, 1.0f);

    stream->setControl(ControlId::normalize, 0.25f); // the gain of live input now
    EXPECT_EQ(stream->waveForm().data().normalizeGain, 0.25f);
    ASSERT_TRUE(stream->waveForm().clearBuffer());
    EXPECT_EQ(now(), stream->waveForm().liveSample());
    ASSERT_TRUE(stream->loadSound(spike(2000, 44100.0f, 1.0f)));
    EXPECT_EQ(now(), stream->waveForm().liveSample());

    ASSERT_TRUE(stream->enableLive(false));
    EXPECT_EQ(now()->size, 2000u);
    EXPECT_EQ(now()->data[1], 0.25f);
    EXPECT_FALSE(stream->waveForm().data().isLiveEnabled);
    EXPECT_FLOAT_EQ(fields(stream).playbackRate, 22.05f);
}

TEST(StreamRegion, IsTheFractionsNamedAndRunsBackFromAStartAboveTheEnd) {
    TestStream stream;
    ASSERT_TRUE(stream->setRegion(0.75f, 0.25f));
    EXPECT_EQ(fields(stream).scanStart, 0.75f);
    EXPECT_EQ(fields(stream).scanEnd, 0.25f);
    EXPECT_EQ(fields(stream).scanSpan, -0.5f);
    EXPECT_LT(fields(stream).scanFrequency, 0.0f);
    ASSERT_TRUE(stream->setRegion(0.5f, 1.0f));
    EXPECT_EQ(fields(stream).scanSpan, 0.5f);
    const auto before = fields(stream);
    for (const float bad : {-0.1f, 1.1f, kNaN}) {
        EXPECT_FALSE(stream->setRegion(bad, 1.0f));
        EXPECT_FALSE(stream->setRegion(0.0f, bad));
    }
    EXPECT_EQ(fields(stream), before);
}

TEST(StreamRate, ReachesEngineAndEffectsAndKeepsTheirParameters) {
    TestStream stream;
    stream->setControl(ControlId::leftGain, 0.5f);
    stream->setControl(ControlId::ringModulationAmount, 0.75f);
    for (const double rate : {96000.0, 0.0, -1.0, double{kNaN}, 1e300}) stream->prepare(rate);
    mokGranulatorSF& engine = stream->engine();
    EXPECT_EQ(StreamProbe::grain(engine, 23).sampleRate, 96000.0f);
    EXPECT_EQ(engine.echoModule()->sampleRate, 96000.0);
    EXPECT_EQ(engine.ringModulatorModule()->sampleRate, 96000.0);
    EXPECT_FLOAT_EQ(fields(stream).scanIncrement, fields(stream).scanFrequency / 96000.0f);
    EXPECT_EQ(echo::getparameter(engine.echoModule(), echo::kFeedbackL), 0.5);
    EXPECT_NEAR(echo::getparameter(engine.echoModule(), echo::kTimeL), 13230.0, 1e-9);
    EXPECT_EQ(RM::getparameter(engine.ringModulatorModule(), RM::kDryWet), 0.75);
}

} // namespace
} // namespace zephyra
