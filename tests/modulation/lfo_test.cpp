// The LFO by itself: shapes, cycles, rates and hostile numbers.

#include "modulation/lfo.h"
#include "platform/random_source.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(Lfo, GivesEachShapesValueAtAPhase) {
    RandomSource random;
    constexpr double kPhases[] = {0.0, 0.125, 0.25, 0.5, 0.875, 1.0};
    const std::pair<std::int64_t, std::array<double, 6>> kRows[] = {
        {kLfoSine, {0.5, 0.853553, 1.0, 0.5, 0.146447, 0.5}},
        {kLfoSquare, {0.0, 1.0, 1.0, 0.0, 0.0, 0.0}},
        {kLfoV, {0.0, 0.25, 0.5, 1.0, 0.25, 0.0}},
        {kLfoLineRise, {0.0, 0.125, 0.25, 0.5, 0.875, 1.0}},
        {kLfoLineFall, {1.0, 0.875, 0.75, 0.5, 0.125, 0.0}},
        {7, {0.0, 0.125, 0.25, 0.5, 0.875, 1.0}}};
    for (const auto& [shape, values] : kRows)
        for (std::size_t i = 0; i < values.size(); ++i) {
            MOK_LFO lfo(random);
            lfo.setShape(shape);
            lfo.setPhase(kPhases[i]);
            EXPECT_NEAR(lfo.valueAtPhase(), values[i], 1e-6) << shape << " at " << kPhases[i];
        }
}

TEST(Lfo, WrapsOnceItsPhaseExceedsOneAndHoldsHostileNumbers) {
    RandomSource random;
    MOK_LFO lfo(random);
    lfo.setHz(0.0);
    EXPECT_EQ(lfo.hz(), 0.016);
    lfo.setHz(100.0);
    lfo.setHz(HUGE_VAL);
    lfo.setShape(kLfoLineRise);
    lfo.setPhase(0.25);
    for (const double expected : {1.0, 0.75, 0.5, 0.25}) { // 24 Hz: three quarters a tick
        processLFO(&lfo);
        EXPECT_EQ(lfo.value(), expected);
    }
    processLFO(nullptr);
    for (const double phase : {-1.0, 2.5, 1e300, HUGE_VAL})
        for (std::int64_t shape = -1; shape < 8; ++shape) {
            lfo.setShape(shape);
            lfo.setPhase(phase);
            EXPECT_TRUE(lfo.valueAtPhase() >= 0.0 && lfo.valueAtPhase() <= 1.0) << shape;
            processLFO(&lfo);
            EXPECT_TRUE(lfo.getPhase() >= 0.0 && lfo.getPhase() <= 1.0) << phase;
            EXPECT_TRUE(lfo.value() >= 0.0 && lfo.value() <= 1.0) << shape << " at " << phase;
        }
}

TEST(Lfo, DrawsANewRandomValueEachCycle) {
    std::uint32_t next = 0;
    RandomSource random;
    random.setGenerator([&] { return next += 0x40000000u; });
    const auto sixTicks = [&](LfoShape shape) {
        MOK_LFO lfo(random);
        lfo.setShape(shape);
        lfo.setHz(16.0); // half a cycle each
        next = 0;
        std::vector<double> values;
        for (int tick = 0; tick < 6; ++tick) processLFO(&lfo), values.push_back(lfo.value());
        return values;
    };
    EXPECT_EQ(sixTicks(kLfoRandom), (std::vector{0.0, 0.0, 0.25, 0.25, 0.5, 0.5}));
    EXPECT_EQ(sixTicks(kLfoRandomInterp), (std::vector{0.0, 0.0, 0.125, 0.25, 0.375, 0.5}));
}

} // namespace
} // namespace zephyra
