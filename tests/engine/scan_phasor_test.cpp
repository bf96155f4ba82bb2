#include "engine/scan_phasor.h"
#include "tests/support/stream_probe.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

std::vector<float> run(mokPhasor& phasor, int count) {
    std::vector<float> out(static_cast<std::size_t>(count));
    phasor.Processing(out.data(), count);
    return out;
}

TEST(ScanPhasor, AnswersThePhaseBeforeEachStepAndWrapsBothWays) {
    mokPhasor up(44100), down(44100);
    ASSERT_TRUE(up.setFrequency(11025));
    EXPECT_EQ(run(up, 3), (std::vector<float>{0, 0.25f, 0.5f}));
    EXPECT_FALSE(up.hasWrapped());
    EXPECT_EQ(run(up, 1), std::vector<float>{0.75f});
    EXPECT_TRUE(up.hasWrapped());
    EXPECT_EQ(run(up, 2), (std::vector<float>{0, 0.25f}));
    EXPECT_EQ(up.latest(), 0.25f);

    ASSERT_TRUE(down.setFrequency(-11025));
    EXPECT_EQ(run(down, 5), (std::vector<float>{0, 0.75f, 0.5f, 0.25f, 0}));
}

TEST(ScanPhasor, TakesAJumpAtTheNextBlock) {
    mokPhasor phasor(100);
    phasor.setFrequency(1);
    for (const auto& [asked, taken] : {std::pair{0.5, 0.5f}, {-0.25, 0.25f}}) {
        phasor.setPhase(asked);
        EXPECT_FLOAT_EQ(run(phasor, 3)[0], taken);
    }
    phasor.setPhase(7); // as far as a phase goes: the step then wraps it
    EXPECT_EQ(run(phasor, 1)[0], 1.0f);
    const float before = phasor.latest();
    phasor.setPhase(std::nan(""));
    EXPECT_NE(run(phasor, 1)[0], before);
}

TEST(ScanPhasor, FollowsItsRateAndRefusesWhatIsNotFinite) {
    mokPhasor phasor(44100);
    phasor.setFrequency(441);
    phasor.setSampleRate(88200);
    EXPECT_EQ(PhasorProbe::increment(phasor), 441.0f / 88200.0f);
    for (float rate : {0.0f, -1.0f, INFINITY, NAN}) phasor.setSampleRate(rate);
    EXPECT_FALSE(phasor.setFrequency(INFINITY) || phasor.setFrequency(NAN));
    EXPECT_EQ(PhasorProbe::increment(phasor), 441.0f / 88200.0f);
    EXPECT_EQ(phasor.currentFrequency(), 441.0f);
}

TEST(ScanPhasor, StaysFiniteAtAnyStep) {
    for (float frequency : {3e38f, -3e38f, 1e10f}) {
        mokPhasor phasor(1);
        ASSERT_TRUE(phasor.setFrequency(frequency));
        for (int block = 0; block < 3; ++block)
            for (float phase : run(phasor, 4096)) ASSERT_TRUE(std::isfinite(phase));
        EXPECT_TRUE(std::isfinite(PhasorProbe::phase(phasor)));
    }
}

} // namespace
} // namespace zephyra
