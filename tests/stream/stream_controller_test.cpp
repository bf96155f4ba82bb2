// What the stream controller hands to its engine: controls, sounds, envelopes and live input.

#include "stream/stream_controller.h"

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/envelope_menu.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace zephyra {
namespace {

using namespace delay_stereo_forward;
using enum ControlId;
using Fields = StreamProbe::Fields;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// A sound of frames at rate whose only frame that is not silent is peak.
std::shared_ptr<mokSample> spike(std::uint64_t frames, float rate, float peak) {
    auto sound = std::make_shared<mokSample>(frames, rate);
    sound->data[1] = peak;
    sound->writeGuardPoint();
    return sound;
}

class StreamController : public testing::Test {
protected:
    Fields fields() { return StreamProbe::fields(stream->engine()); }
    const mokSample* sound() { return StreamProbe::sample(stream->engine()); }
    /// What the controls reach, in the order of their table.
    std::vector<double> reached() {
        const Fields f = fields();
        std::vector<double> all = {f.level,      f.panB,          f.width,     f.density,
                                   f.rndDensity, f.grainLength,   f.rndLength, f.playbackRate,
                                   f.rndPitch,   f.scanFrequency, f.jitter};
        mokGranulatorSF& engine = stream->engine();
        for (const int i : {kTimeL, kTimeR, kFeedbackL, kFeedbackR})
            all.push_back(getparameter(engine.echoModule(), i));
        for (const int i : {RM::kFreq, RM::kDryWet})
            all.push_back(RM::getparameter(engine.ringModulatorModule(), i));
        all.insert(all.end(), {double(engine.echoOn), double(engine.ringOn)});
        return all;
    }

    TestStream stream;
};

TEST_F(StreamController, HandsEveryControlToTheFieldOrParameterItIsForAndToNoOther) {
    const struct {
        ControlId id;
        float value;
        double expected;
    } cases[] = {{amplitude, 0.75f, 0.75},     {pan, -1, 0},
                 {width, 0.5f, 0.5},           {density, 100, 100},
                 {rndDensity, 1, 0.5},         {length, 250, 0.25},
                 {rndLength, 1, 0.5},          {pitch, 12, 0.5},
                 {rndPitch, 12, 0.5},          {scanning, -2, -0.5},
                 {jittering, 500, 0.125},      {leftDelay, 0.5f, 22050},
                 {rightDelay, 4.5f, 198450},   {leftGain, 0.75f, 0.75},
                 {rightGain, 0.25f, 0.25},     {ringModulationFrequency, 500, 500},
                 {ringModulationAmount, 1, 1}, {echoSwitch, 0.4f, 1},
                 {ringModulationSwitch, 1, 1}};
    for (const ControlRange& range : controlRanges())
        EXPECT_EQ(stream->control(range.id), range.defaultValue) << range.name;
    stream->play(true);
    ASSERT_TRUE(stream->loadSound(spike(40000, 10000.0f, 1.0f))); // 4 s
    std::vector<double> expected = {0.5,    1,   0.25, 50,       0.25,  0.085f, 0.25,
                                    0.25,   0,   0.25, 0.00125f, 13230, 11025,  0.341f,
                                    0.231f, 220, 0.5,  0,        0};
    const auto closely = testing::DoubleNear(1e-9);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_THAT(reached(), testing::Pointwise(closely, expected)) << i;
        ASSERT_TRUE(stream->setControl(cases[i].id, cases[i].value));
        EXPECT_EQ(stream->control(cases[i].id), i == 17 ? 1.0f : cases[i].value);
        expected[i] = cases[i].expected;
    }
    EXPECT_THAT(reached(), testing::Pointwise(closely, expected));
    EXPECT_EQ(stream->engine().echoTimeL - stream->engine().echoTimeR, -4000.0f);
    ASSERT_TRUE(stream->setControl(scanning, 0.0f) && stream->setControl(scrubbingWave, 0.75f));
    StereoBlock out(64);
    GranulatorProcessing(&stream.controller, 64, nullptr, out.from(0));
    EXPECT_EQ(stream->engine().currentScanPosition(), 0.75f);
}

TEST_F(StreamController, RefusesWhatItHasNoPlaceForAndChangesNothing) {
    const Fields before = fields();
    for (const ControlId id : {dryWet, measures, quarters, subdivisions, fadeIn, fadeOut})
        EXPECT_FALSE(stream->setControl(id, controlRange(id).defaultValue));
    EXPECT_FALSE(stream->setControl(amplitude, 1.01f));
    EXPECT_EQ(stream->control(amplitude), 0.5f);
    for (const float bad : {-0.1f, 1.1f, kNaN})
        EXPECT_FALSE(stream->setRegion(bad, 1.0f) || stream->setRegion(0.0f, bad)) << bad;
    EXPECT_EQ(fields(), before);
}

TEST_F(StreamController, PicksAnEnvelopeAsANewTable) {
    const auto window = [&] { return StreamProbe::window(stream->engine()); };
    const mokWindow* const hanning = window();
    EXPECT_EQ(hanning->data[2048], 1.0f);
    ASSERT_TRUE(stream->pickEnvelope(0));
    EXPECT_NE(window(), hanning);
    EXPECT_EQ(window()->data[1000], makeEnvelope(0)->data[1000]);
    for (const std::size_t beyond : {kEnvelopeMenu.size(), ~std::size_t{0}})
        EXPECT_FALSE(stream->pickEnvelope(beyond));
    EXPECT_EQ(stream->waitingObjects(), 0u); // nobody renders: all is freed at once
}

TEST_F(StreamController, KeepsPitchSpeedAndJitterOverAChangeOfSampleAndRegion) {
    stream->setControl(pitch, -12.0f);
    stream->setControl(scanning, 2.0f);
    stream->setControl(jittering, 100.0f);
    ASSERT_TRUE(stream->setRegion(0.25f, 0.75f));
    const auto expectFields = [&](float rate, float frequency, float jitter) {
        EXPECT_FLOAT_EQ(fields().playbackRate, rate);
        EXPECT_FLOAT_EQ(fields().scanFrequency, frequency);
        EXPECT_FLOAT_EQ(fields().jitter, jitter);
    };
    ASSERT_TRUE(stream->loadSound(spike(20000, 10000.0f, 1.0f))); // 2 s
    expectFields(0.25f, 2.0f, 0.05f);      // twice a second through half of it
    ASSERT_TRUE(stream->enableLive(true)); // 10 s
    expectFields(0.05f, 0.4f, 0.01f);
    ASSERT_TRUE(stream->enableLive(false));
    ASSERT_TRUE(stream->setRegion(0.75f, 0.25f)); // backwards
    EXPECT_EQ(fields().scanSpan, -0.5f);
    expectFields(0.25f, -2.0f, 0.05f);
}

TEST_F(StreamController, NormalizesACopyOfTheSoundThatFollowsTheControl) {
    const auto original = spike(1000, 44100.0f, -0.25f);
    ASSERT_TRUE(stream->loadSound(original));
    EXPECT_EQ(sound()->data[1], -1.0f);
    for (const float peak : {0.5f, 0.0f, 1.0f}) {
        ASSERT_TRUE(stream->setControl(normalize, peak));
        EXPECT_EQ(sound()->data[1], -peak);
        EXPECT_EQ(sound()->data[sound()->size + 1], -peak) << "guard";
    }
    EXPECT_EQ(original->data[1], -0.25f);
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 0.0f)));
    EXPECT_EQ(sound()->data[1], 0.0f);
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 1e-45f))); // no finite gain reaches 1
    EXPECT_TRUE(std::isfinite(sound()->data[1]));

    const mokSample* const before = sound();
    for (const auto& refused :
         {std::shared_ptr<mokSample>(), std::make_shared<mokSample>(), spike(1000, 0.0f, 1.0f),
          spike(1000, -1.0f, 1.0f), spike(1000, 44100.0f, kNaN), spike(1000, 44100.0f, kInfinity)})
        EXPECT_FALSE(stream->loadSound(refused));
    EXPECT_EQ(sound(), before);
}

TEST_F(StreamController, GoesBackToTheNewestSoundWhenLiveInputGoesOff) {
    ASSERT_TRUE(stream->loadSound(spike(1000, 44100.0f, 0.5f)));
    stream->setControl(normalize, 0.5f);
    ASSERT_TRUE(stream->enableLive(true));
    EXPECT_EQ(stream->control(normalize), 1.0f);
    EXPECT_EQ(stream->waveForm().data().normalizeGain, 1.0f);

    stream->setControl(normalize, 0.25f); // the gain of live input now
    EXPECT_EQ(stream->waveForm().data().normalizeGain, 0.25f);
    ASSERT_TRUE(stream->waveForm().clearBuffer());
    ASSERT_TRUE(stream->loadSound(spike(2000, 44100.0f, 1.0f)));
    EXPECT_EQ(sound(), stream->waveForm().liveSample());

    ASSERT_TRUE(stream->enableLive(false));
    EXPECT_EQ(sound()->size, 2000u);
    EXPECT_EQ(sound()->data[1], 0.25f);
    EXPECT_FALSE(stream->waveForm().data().isLiveEnabled);
}

TEST_F(StreamController, HandsANewRateToEngineAndEffectsAndKeepsTheirParameters) {
    stream->setControl(leftGain, 0.5f);
    stream->setControl(ringModulationAmount, 0.75f);
    const auto before = reached();
    for (const double rate : {96000.0, 0.0, -1.0, double{kNaN}, 1e300}) stream->prepare(rate);
    mokGranulatorSF& engine = stream->engine();
    EXPECT_EQ(StreamProbe::grain(engine, 23).sampleRate, 96000.0f);
    EXPECT_EQ(engine.echoModule()->sampleRate, 96000.0);
    EXPECT_EQ(engine.ringModulatorModule()->sampleRate, 96000.0);
    EXPECT_FLOAT_EQ(fields().scanIncrement, fields().scanFrequency / 96000.0f);
    EXPECT_EQ(reached(), before);
}

} // namespace
} // namespace zephyra
