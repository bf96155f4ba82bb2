// What a host sees of the audio unit: its answers, its memory, its first moments, its mix.

#include "audiounit/dry_wet_mix.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/fake_host.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(AudioUnit, RefusesWhatCannotBeAndTouchesNothing) {
    using namespace audio_unit_status;
    FakeHost rig;
    std::fill(rig.out.left.begin(), rig.out.left.end(), 7.0f);
    rig.context.currentTempo = 120;
    EXPECT_EQ(rig.cycle(64), uninitialized);
    for (std::uint32_t frames : {0u, 4097u})
        EXPECT_EQ(rig.unit->setMaximumFramesToRender(frames), invalidValue);
    AUAudioUnitBus& output = *rig.unit->outputBusses().busses[0];
    for (const AVAudioFormat& format : {AVAudioFormat{44100, 9}, {44100, 0}, {NAN, 2}, {0, 2}})
        EXPECT_EQ(output.setFormat(format), invalidValue);
    output.setFormat({48000, 1});
    EXPECT_EQ(rig.unit->allocateRenderResourcesAndReturnError(), -10875);
    EXPECT_EQ(rig.cycle(64), uninitialized);
    output.setFormat({48000, 2});
    rig.ready();
    EXPECT_EQ(rig.unit->allocateRenderResourcesAndReturnError(), initialized);
    EXPECT_EQ(rig.unit->setMaximumFramesToRender(64), initialized);
    EXPECT_EQ(rig.cycle(513), -10874);
    rig.pullStatus = -50;
    EXPECT_EQ(rig.cycle(512), -50);
    AudioBufferList list = rig.out.from(0);
    EXPECT_EQ(rig.unit->internalRenderBlock()(64, list, nullptr, nullptr), noConnection);
    list.mNumberBuffers = 1;
    EXPECT_EQ(rig.unit->internalRenderBlock()(64, list, nullptr, nullptr), noError);
    EXPECT_EQ(rig.unit->record().lastTempoValue, -1.0); // the host was never asked
    EXPECT_EQ(std::count(rig.out.left.begin(), rig.out.left.end(), 7.0f), 4096);
}

TEST(AudioUnit, FadesInFromSilenceSilencesWhatIsNoSoundAndOnlyReadsTheHostsInput) {
    FakeHost rig;
    rig.unit->setMaximumFramesToRender(4096);
    const audio_struct& record = rig.unit->record();
    for (int allocation = 0; allocation < 2; ++allocation) {
        rig.unit->deallocateRenderResources();
        rig.ready();
        rig.cycle(2);
        EXPECT_EQ(rig.rendered[1][1], 0.0f); // until it is told
        rig.unit->setDryWet(50);
        rig.cycle(2);
        EXPECT_EQ(rig.rendered[1][0], 0.5f * 0.0008f);
        EXPECT_EQ(rig.rendered[1][1], 0.5f * (0.0008f * 0.9992f + 0.0008f));
        EXPECT_EQ(record.m_z_dry_wet, record.m_z_dry_wet_inv);
        for (int i = 0; i < 40; ++i) rig.cycle(4096); // until the gains stand
    }
    rig.input = {0.5f, NAN, INFINITY, -1.1e6f, -1e6f};
    rig.outputs = false;
    rig.cycle(5);
    const float gain = record.m_z_dry_wet_inv;
    EXPECT_NEAR(gain, 1.0f, 1e-3f);
    for (const auto& channel : rig.rendered)
        EXPECT_EQ(channel, (std::vector<float>{0.5f * gain, 0, 0, 0, -1e6f * gain}));
    EXPECT_TRUE(std::isnan(rig.input[1]) && rig.input[3] == -1.1e6f);
    rig.inputs = false;
    rig.cycle(8);
    EXPECT_EQ(rig.rendered[0], std::vector<float>(8, 0.0f));
}

TEST(AudioUnit, BeginsAsItsComponentTypeWantsAndLeavesNothingPostedThatNeedsIt) {
    const std::tuple<FourCharCode, bool, const char*> rows[] = {
        {component_type::effect, false, "stand refresh "},
        {component_type::musicEffect, false, "stand refresh "},
        {component_type::instrument, false, "load:Zephyra_Sample08.mp3 refresh "},
        {component_type::instrument, true, "refresh "}};
    for (const auto& [type, wasRequested, calls] : rows) {
        FakeHost rig(type);
        const bool instrument = type == component_type::instrument;
        rig.controller.wasRequested = wasRequested;
        EXPECT_EQ(rig.controller.takeCalls(), "connect ");
        rig.instance.session = {48000, 0.01};
        rig.unit->allocateRenderResourcesAndReturnError();
        rig.instance.runLoop.runPosted();
        EXPECT_EQ(rig.controller.takeCalls(), calls);
        const StreamControls& controls = rig.controller.stream.controls;
        EXPECT_EQ(controls._enableLIVE.tag, instrument ? 0 : 1);
        EXPECT_EQ(rig.controller.stream.liveAllowed(), !instrument);
        EXPECT_EQ(controls._enableLIVE.hidden && controls.liveClear.hidden, instrument);
        EXPECT_EQ(rig.controller.dryWet.alpha, instrument ? 0.33f : 1.0f);
        EXPECT_EQ(rig.controller.stream.bufferSize(), 480.0);
        rig.outputs = false;
        rig.cycle(512);
        EXPECT_EQ(rig.rendered[1], std::vector<float>(512, 0.0f));
        rig.unit->deallocateRenderResources();
        rig.unit->allocateRenderResourcesAndReturnError();
        rig.unit->deallocateRenderResources();
        rig.instance.runLoop.runPosted();
        rig.unit->allocateRenderResourcesAndReturnError();
        rig.unit.reset();
        rig.instance.runLoop.runPosted();
        EXPECT_EQ(rig.controller.takeCalls(), "remove remove remove ");
    }
}

TEST(DryWet, RaisesWetOverTheFirstHalfAndLowersDryOverTheSecond) {
    FakeHost rig;
    const float rows[][3] = {{25, 0.5f, 1}, {75, 1, 0.5f}, {100, 1, 0}, {0, 0, 1},
                             {50, 1, 1},    {-9, 0, 1},    {300, 1, 0}, {NAN, 1, 0}};
    for (const auto& [percent, wet, dry] : rows) {
        rig.unit->setDryWet(percent);
        EXPECT_EQ(rig.unit->record()._inputDryWet.load(), wet) << percent;
        EXPECT_EQ(rig.unit->record()._inputDryWetInv.load(), dry) << percent;
    }
}

TEST(DryWet, GlidesBitForBitLikeThePlainLoopInBlocksOfAnyLength) {
    const FlushDenormals flush;
    const auto sound = noiseSample(4096, 44100);
    const float* const dry = sound->data.get();
    const float targets[][2] = {{1, 1}, {0, 1}, {0.5f, 1}, {1, 0}, {0, 0}, {1, 1}};
    DryWetGains gains;
    float wetGain = 0, dryGain = 0;
    for (int n = 0, frames = 1; n < 1200; ++n, frames = frames * 7 % 4093) {
        // Every 200 blocks: long enough for a gain to come to rest, also at 0.
        gains.wetTarget = targets[n / 200][0];
        gains.dryTarget = targets[n / 200][1];
        std::vector<float> wet[2], plain[2];
        for (auto* channels : {wet, plain})
            for (int c : {0, 1}) channels[c].assign(dry + 2 - c, dry + 4096);
        mixDryWet(gains, {{wet[0].data(), dry}, {wet[1].data(), dry + 1}}, frames);
        for (std::size_t i = 0; i < static_cast<std::size_t>(frames); ++i) {
            dryGain = dryGain * 0.9992f + 0.0008f * gains.dryTarget;
            wetGain = wetGain * 0.9992f + 0.0008f * gains.wetTarget;
            for (std::size_t c : {0u, 1u})
                plain[c][i] = plain[c][i] * wetGain + dry[i + c] * dryGain;
        }
        ASSERT_TRUE(wet[0] == plain[0] && wet[1] == plain[1]) << "block " << n;
        ASSERT_TRUE(gains.wet == wetGain && gains.dry == dryGain) << "block " << n;
    }
}

} // namespace
} // namespace zephyra
