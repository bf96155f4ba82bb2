// What the stream schedules, starts and puts out: values worked out by hand.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "engine/granular_stream.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr float kRate = 44100.0f;

struct Stream {
    std::shared_ptr<mokSample> sample;
    mokWindow window{mokWindow::kPoints, kWindowHanning};
    mokGranulatorSF engine;
    GrainTrace trace;

    explicit Stream(std::shared_ptr<mokSample> sound = noiseSample(44100, kRate),
                    std::int32_t voices = 24)
        : sample(std::move(sound)), engine(sample.get(), &window, voices, kRate, 1) {
        engine.granularOn = true;
        engine.setRndDensity(0);
        engine.setRndLength(0);
        engine.setJittering(0);
        engine.setTrace(&trace);
    }

    StereoBlock render(int frames) {
        StereoBlock block(static_cast<std::size_t>(frames));
        engine.GranularStreamProcessing(frames, block.from(0));
        return block;
    }

    std::vector<GrainRecord> grains() {
        std::vector<GrainRecord> all;
        for (GrainRecord record; trace.take(record);) all.push_back(record);
        return all;
    }

    std::vector<std::uint64_t> startFrames() {
        std::vector<std::uint64_t> frames;
        for (const auto& grain : grains()) frames.push_back(grain.frame);
        return frames;
    }
};

TEST(GranularStream, StartsAtTheFirstFrameAndThenAtItsDensity) {
    using Frames = std::vector<std::uint64_t>;
    const std::pair<float, Frames> cases[] = {
        {50, {0, 882, 1764, 2646}},
        {-14.7f, {0, 3000}}, // magnitudes count
        {0, {0}},            // an interval without an end
        {44100, {0, 1, 2, 3}},
        {1e9f, {0, 1, 2, 3}}, // one a frame is the most
    };
    for (const auto& [density, expected] : cases) {
        for (int block : {1, 100, 3000}) {
            Stream stream;
            stream.engine.setDensity(density);
            const int frames = density > 1000 ? 4 : 3001;
            for (int at = 0; at < frames; at += block) stream.render(std::min(block, frames - at));
            EXPECT_EQ(stream.startFrames(), expected) << density << " in blocks of " << block;
        }
    }
}

TEST(GranularStream, KeepsADrawnIntervalToItsEnd) {
    Stream stream;
    stream.engine.setDensity(0);
    stream.engine.setLength(10);
    stream.render(10);
    stream.engine.setDensity(400);
    stream.render(44100);
    EXPECT_EQ(stream.startFrames(), std::vector<std::uint64_t>{0});
    EXPECT_EQ(stream.engine.soundedSamples(), 440u); // the 441st is the first of silence
}

TEST(GranularStream, TracesGrainsThatFindNoVoiceAsDropped) {
    Stream stream(noiseSample(44100, kRate), 2);
    stream.engine.setLength(2000);
    stream.render(20000);
    const auto grains = stream.grains();
    ASSERT_GT(grains.size(), 10u);
    for (std::size_t i = 0; i < grains.size(); ++i) EXPECT_EQ(grains[i].dropped, i >= 2) << i;
    EXPECT_EQ(stream.engine.soundingGrains(), 2);
}

TEST(GranularStream, KeepsItsTwoMixesFarFromLikePlacesInTheirPages) {
    const auto apart = StreamProbe::mixDistance(Stream().engine) % 4096;
    EXPECT_TRUE(apart >= 1024 && apart <= 3072) << apart;
}

TEST(GranularStream, PansLopsidedly) {
    const float spread = 0.25f * (16807 * 0x1p-31f + 1) * 0.5f;
    const float L = 1 - 0.25f + spread, R = 1 - spread;
    const double quarter = std::sin(std::numbers::pi / 4);
    const std::tuple<float, double, double> cases[] = {
        {0, L, R},
        {-1, L + R, 0}, // the right share folds into the left channel
        {1, 0, 2 * R},  // the right share doubles, the left one is gone
        {-9, L + R, 0},
        {9, 0, 2 * R},
        {-0.5f, L + R * (1 - quarter), R * quarter},
        {0.5f, L * (1 - quarter), R * quarter + R}};
    for (const auto& [pan, left, right] : cases) {
        Stream stream;
        stream.engine.setPan(pan);
        stream.render(1);
        EXPECT_NEAR(StreamProbe::gainL(stream.engine, 0), left, 1e-6) << pan;
        EXPECT_NEAR(StreamProbe::gainR(stream.engine, 0), right, 1e-6) << pan;
    }
}

TEST(GranularStream, ScansItsRegionInRealTime) {
    const std::tuple<float, float, float, double, double> cases[] = {
        {0, 1, 1, 0.25, 0.25},       // the sound lasts one second
        {0, 1, 2, 0.25, 0.5},        // twice as fast
        {0.5f, 1, 1, 0.25, 0.75},    // the region's own half second
        {0.5f, 1, 1, 0.75, 0.75},    // and round again
        {0, 1, -1, 0.25, 0.75},      // backwards
        {0.8f, 0.2f, 1, 0.15, 0.35}, // start above end: both signs turn, so upwards from the end
    };
    for (const auto& [start, end, speed, seconds, expected] : cases) {
        Stream stream;
        stream.engine.setSpeed(speed);
        stream.engine.setEnd(end);
        stream.engine.setStart(start);
        stream.render(static_cast<int>(seconds * 44100) + 1);
        EXPECT_NEAR(stream.engine.currentScanPosition(), expected, 1e-3)
            << start << ".." << end << " at " << speed;
    }
}

TEST(GranularStream, TreatsStartAndEndUnalike) {
    Stream stream;
    stream.engine.setEnd(0.25f);
    stream.engine.setStart(0.75f);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanSpan, -0.5f); // signed
    stream.engine.setEnd(0.25f);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanSpan, 0.5f); // a distance
    stream.engine.setEnd(0.75f);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanSpan, 1e-5f);
    stream.engine.setStart(0.75f);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanSpan, 0.0f); // only the frequency is saved
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanFrequency, 1.0f / (1.0f * 1e-5f));
}

TEST(GranularStream, DropsThePitchWithANewSample) {
    Stream stream;
    const auto other = noiseSample(22050, kRate);
    stream.engine.setPitch(12);
    EXPECT_EQ(StreamProbe::fields(stream.engine).playbackRate, 2.0f);
    stream.engine.setSample(nullptr);
    EXPECT_EQ(StreamProbe::fields(stream.engine).playbackRate, 2.0f);
    stream.engine.setSample(other.get());
    EXPECT_EQ(StreamProbe::fields(stream.engine).playbackRate, 2.0f); // 22050 frames, own pitch
    stream.engine.setPitch(12);
    EXPECT_EQ(StreamProbe::fields(stream.engine).playbackRate, 4.0f);
    stream.render(1);
    EXPECT_EQ(StreamProbe::grain(stream.engine, 23).source, other.get());
}

TEST(GranularStream, StandsAlmostStillOnItsSilentPlaceholder) {
    mokGranulatorSF engine(nullptr, nullptr, 24, kRate, 1);
    EXPECT_TRUE(engine.onPlaceholder());
    const auto before = StreamProbe::fields(engine);
    engine.setPitch(12);
    engine.setJittering(100);
    EXPECT_EQ(StreamProbe::fields(engine), before);
    engine.setSpeed(3);
    EXPECT_EQ(StreamProbe::fields(engine).scanFrequency, 1e-5f);
    engine.granularOn = true;
    StereoBlock block(5000);
    engine.GranularStreamProcessing(5000, block.from(0));
    for (float sample : block.left) ASSERT_EQ(sample, 0.0f);
    EXPECT_GT(engine.startedGrains(), 3u);

    const auto sound = noiseSample(44100, kRate);
    const mokWindow window(4096, kWindowHanning);
    engine.setSample(sound.get());
    engine.setWindow(&window);
    EXPECT_FALSE(engine.onPlaceholder());
    engine.GranularStreamProcessing(5000, block.from(0));
    EXPECT_GT(std::abs(block.left[4000]), 0.0f);
}

TEST(GranularStream, PutsOutWhatTheEffectsInUseMakeOfTheGrains) {
    constexpr int kFrames = 4000;
    for (int choice = 0; choice < 16; ++choice) {
        SCOPED_TRACE(choice);
        const bool echoes = choice & 1, rings = choice & 2;
        const bool echoFails = choice & 4, ringFails = choice & 8;
        Stream stream, dry;
        stream.engine.echoOn = echoes;
        stream.engine.ringOn = rings;
        for (Stream* each : {&stream, &dry}) {
            CommonState *echo = each->engine.echoModule(),
                        *ring = each->engine.ringModulatorModule();
            delay_stereo_forward::setparameter(echo, delay_stereo_forward::kTimeL, 50);
            RM::setparameter(ring, RM::kDryWet, 1);
            RM::setparameter(ring, RM::kFreq, 2000);
            const auto fail = [](auto perform, CommonState* module) {
                perform(module, nullptr, nullptr, nullptr, nullptr, 1);
            };
            if (echoFails) fail(delay_stereo_forward::perform, echo);
            if (ringFails) fail(RM::perform, ring);
        }
        StereoBlock expected = dry.render(kFrames);
        float *left = expected.left.data(), *right = expected.right.data();
        const FlushDenormals flush;
        if (echoes)
            delay_stereo_forward::perform(dry.engine.echoModule(), left, right, left, right,
                                          kFrames);
        if (rings) RM::perform(dry.engine.ringModulatorModule(), left, right, left, right, kFrames);
        const StereoBlock out = stream.render(kFrames);
        EXPECT_EQ(out.left, expected.left);
        EXPECT_EQ(out.right, expected.right);
    }
}

TEST(GranularStream, RecomputesEveryIncrementForANewRate) {
    Stream stream;
    stream.render(100);
    stream.engine.setSampleRate(88200);
    EXPECT_EQ(StreamProbe::grain(stream.engine, 0).phaseIncrement, 1.0f / 88200);
    EXPECT_EQ(StreamProbe::grain(stream.engine, 0).envelopeIncrement, (1 / 0.085f) / 88200);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanIncrement, 1.0f / 88200);
    for (float rate : {0.0f, -1.0f, NAN, INFINITY}) stream.engine.setSampleRate(rate);
    EXPECT_EQ(StreamProbe::fields(stream.engine).scanIncrement, 1.0f / 88200);
}

TEST(Retirement, KeepsReplacedObjectsUntilTheirCycleHasEnded) {
    RenderCycle cycle;
    Retirement retired(cycle);
    const auto object = std::make_shared<int>(1);
    retired.retire(object);
    EXPECT_EQ(retired.waiting(), 0u); // nobody renders: freed at once
    {
        const RenderCycle::Scope rendering(cycle);
        retired.retire(object);
        retired.collect();
        EXPECT_EQ(retired.waiting(), 1u);
        EXPECT_EQ(object.use_count(), 2);
    }
    retired.collect();
    EXPECT_EQ(object.use_count(), 1);
}

TEST(GranularStream, IgnoresListsItCannotFill) {
    Stream stream;
    StereoBlock block(64);
    AudioBufferList list = block.from(0);
    list.mNumberBuffers = 1;
    stream.engine.GranularStreamProcessing(64, list);
    list.mNumberBuffers = 2;
    list.mBuffers[1].mData = nullptr;
    stream.engine.GranularStreamProcessing(64, list);
    stream.engine.GranularStreamProcessing(0, block.from(0));
    stream.engine.GranularStreamProcessing(-5, block.from(0));
    EXPECT_EQ(stream.engine.renderedFrames(), 0u);
}

using Setter = void (mokGranulatorSF::*)(const float&);

TEST(GranularStream, KeepsItsSettingsFiniteWhateverItIsGiven) {
    const Setter setters[] = {&mokGranulatorSF::setLevel,      &mokGranulatorSF::setWidth,
                              &mokGranulatorSF::setPan,        &mokGranulatorSF::setLength,
                              &mokGranulatorSF::setDensity,    &mokGranulatorSF::setRndLength,
                              &mokGranulatorSF::setRndDensity, &mokGranulatorSF::setPitch,
                              &mokGranulatorSF::setStart,      &mokGranulatorSF::setEnd,
                              &mokGranulatorSF::setRndPitch,   &mokGranulatorSF::setJittering,
                              &mokGranulatorSF::setSpeed};
    const float values[] = {NAN, INFINITY, -INFINITY, 3e38f, -3e38f, 1e-45f, 0.0f, 1e5f, -7.0f};
    const std::shared_ptr<mokSample> sounds[] = {noiseSample(16, kRate), noiseSample(44100, kRate)};
    for (const auto& sound : sounds) {
        Stream stream(sound);
        for (const Setter first : setters)
            for (const Setter second : setters)
                for (float value : values) {
                    stream.engine.setDefaults();
                    const auto before = StreamProbe::fields(stream.engine);
                    (stream.engine.*first)(value);
                    if (std::isnan(value)) {
                        ASSERT_EQ(StreamProbe::fields(stream.engine), before);
                    }
                    (stream.engine.*second)(-value);
                    stream.render(50);
                    for (const float field :
                         std::bit_cast<std::array<float, 19>>(StreamProbe::fields(stream.engine)))
                        ASSERT_TRUE(std::isfinite(field)) << value;
                    ASSERT_TRUE(std::isfinite(stream.engine.currentScanPosition() +
                                              stream.engine.currentScanPhase()));
                    ASSERT_TRUE(
                        std::isfinite(PhasorProbe::phase(StreamProbe::phasor(stream.engine))));
                    ASSERT_TRUE(std::isfinite(StreamProbe::grain(stream.engine, 0).readPhase));
                }
    }
}

} // namespace
} // namespace zephyra
