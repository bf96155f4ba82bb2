// What the stream controller hands to its engine: controls, sounds, envelopes and live input.

#include "stream/stream_controller.h"

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/envelope_menu.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

namespace zephyra {
namespace {

using namespace delay_stereo_forward;
using enum ControlId;
using Fields = StreamProbe::Fields;

MATCHER(Closely, "") {
    const double expected = std::get<1>(arg);
    return std::abs(std::get<0>(arg) - expected) <= 1e-5 * (std::abs(expected) + 0.1);
}

/// A sound of frames at rate whose only frame that is not silent is peak.
std::shared_ptr<mokSample> spike(std::uint64_t frames, float rate, float peak) {
    auto sound = std::make_shared<mokSample>(frames, rate);
    sound->data[1] = peak;
    sound->writeGuardPoint();
    return sound;
}

struct StreamController : testing::Test {
    Fields fields() { return StreamProbe::fields(stream->engine()); }
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
    const std::tuple<ControlId, float, double> cases[] = {
        {amplitude, 0.75f, 0.75},     {pan, -1, 0},
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
        if (range.id != dryWet && range.id != fadeIn && range.id != fadeOut) {
            EXPECT_NEAR(stream->displayed(range.id), range.defaultValue, 1e-5 * range.maximum)
                << range.name;
        }
    stream->play();
    ASSERT_TRUE(stream->loadSound(spike(40000, 10000.0f, 1.0f))); // 4 s
    std::vector<double> expected = {0.5,    1,   0.25, 50,       0.25,  0.085f, 0.25,
                                    0.25,   0,   0.25, 0.00125f, 13230, 11025,  0.341f,
                                    0.231f, 220, 0.5,  0,        0};
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_THAT(reached(), testing::Pointwise(Closely(), expected)) << i;
        const auto& [id, value, then] = cases[i];
        ASSERT_TRUE(stream->setDisplayed(id, value));
        expected[i] = then;
    }
    EXPECT_THAT(reached(), testing::Pointwise(Closely(), expected));
    EXPECT_EQ(stream->engine().echoTimeL - stream->engine().echoTimeR, -4000.0f);
    // Pitch, speed and jitter stay the same over a change of region and sample.
    ASSERT_TRUE(stream->setRegion(0.75f, 0.25f));                 // backwards through half of it
    ASSERT_TRUE(stream->loadSound(spike(20000, 10000.0f, 1.0f))); // 2 s
    expected[7] = 1.0;
    expected[9] = 2.0;
    expected[10] = 0.25;
    EXPECT_THAT(reached(), testing::Pointwise(Closely(), expected));
    ASSERT_TRUE(stream->pickEnvelope(0));
    EXPECT_EQ(StreamProbe::window(stream->engine())->data[1000],
              makeEnvelope(0, stream.instance.random)->data[1000]);
    EXPECT_FALSE(stream->pickEnvelope(kEnvelopeMenu.size()));
    ASSERT_TRUE(stream->setDisplayed(scanning, 0.0f));
    ASSERT_TRUE(stream->setDisplayed(scrubbingWave, 0.75f));
    StereoBlock out(64);
    GranulatorProcessing(&stream.controller, 64, nullptr, out.from(0));
    EXPECT_EQ(stream->engine().currentScanPosition(), 0.75f);
}

TEST_F(StreamController, MovesTheScanInsideTheRegionAndTakesASeedWithTheNextBlock) {
    StereoBlock out(16);
    const auto render = [&] { GranulatorProcessing(&stream.controller, 16, nullptr, out.from(0)); };
    ASSERT_TRUE(stream->loadSound(spike(40000, 10000.0f, 1.0f))); // 4 s
    stream->setDisplayed(scanning, 0.0f);
    stream->play();
    const float cases[][4] = {{0.25f, 0.75f, 0.5f, 0.5f},  {0.25f, 0.75f, 0.9f, 0.75f},
                              {0.25f, 0.75f, NAN, 0.75f},  {0.75f, 0.25f, 0.5f, 0.5f},
                              {0.75f, 0.25f, 0.9f, 0.75f}, {0.5f, 0.5f, 0.9f, 0.5f}};
    for (const auto& [start, end, asked, expected] : cases) {
        ASSERT_TRUE(stream->setRegion(start, end));
        stream->setScrubNormalizedValue(asked);
        render();
        EXPECT_FLOAT_EQ(stream->getTimePhasor(), expected) << start << ' ' << asked;
    }
    stream->setRegion(0.25f, 1.0f);
    for (const auto& [ms, expected] : {std::pair(2000.0, 0.5f), {0.0, 0.25f}, {9000.0, 1.0f}}) {
        stream->setTimePointer(ms);
        render();
        EXPECT_FLOAT_EQ(stream->getTimePhasor(), expected) << ms;
    }
    stream->stop(); // no grain draws from the generator
    for (const std::uint32_t seed : {77u, 0u}) stream->setSeed(seed);
    EXPECT_NE(StreamProbe::seed(stream->engine()), 77u);
    render();
    EXPECT_TRUE(StreamProbe::seed(stream->engine()) == 77u && stream->seed() == 77u);
}

TEST(ControlCurve, BendsTheMiddleAndKeepsTheEnds) {
    const ControlRange& length = controlRange(ControlId::length);
    const float middle = 5 + 1995 * 0.125f; // half the way, cubed
    EXPECT_FLOAT_EQ(displayedFromLinear(length, 1002.5f), middle);
    EXPECT_FLOAT_EQ(linearFromDisplayed(length, middle), 1002.5f);
    EXPECT_EQ(displayedFromLinear(length, 2001.0f), 2000.0f);
    EXPECT_EQ(linearFromDisplayed(length, 4.0f), 5.0f);
    for (const ControlRange& range : controlRanges()) {
        for (const float bad : {INFINITY, -INFINITY, NAN})
            EXPECT_FALSE(acceptsValue(range, bad)) << range.name;
        for (const float share : {0.0f, 0.1f, 0.4f, 0.75f, 1.0f}) {
            const float span = range.maximum - range.minimum, linear = range.minimum + span * share;
            const float shown = displayedFromLinear(range, linear);
            if (share == 0.0f || share == 1.0f) {
                EXPECT_EQ(shown, linear) << range.name;
            }
            // Fourth roots near 0 are rough.
            EXPECT_NEAR(linearFromDisplayed(range, shown), linear, span * 1e-3f) << range.name;
        }
    }
}

} // namespace
} // namespace zephyra
