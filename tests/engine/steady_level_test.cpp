// A cloud's loudness with the steady level on, over all that the level is to make up for.

#include "engine/envelope_menu.h"
#include "engine/granular_stream.h"
#include "engine/steady_level.h"
#include "platform/random_source.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

#include <numbers>

namespace zephyra {
namespace {

constexpr float kRate = 44100.0f;
constexpr int kBlock = 441;

struct Cloud {
    float density = 50, length = 85, rndDensity = 0.5f, rndLength = 0.5f, width = 0.25f;
    std::size_t envelope = kDefaultEnvelope;
};

/// Pulses of a gliding voice through two formants, in syllables.
std::shared_ptr<mokSample> voiceSample() {
    auto sample = std::make_shared<mokSample>(441000, kRate);
    double phase = 0.0, y[2][2] = {};
    for (std::uint64_t n = 0; n < sample->size; ++n) {
        const double time = static_cast<double>(n) / double{kRate};
        phase += (130.0 + 30.0 * std::sin(2.1 * time)) / double{kRate};
        const double pulse = phase >= 1.0 ? 1.0 : 0.0;
        phase -= pulse;
        double sum = 0.0;
        for (int k = 0; k < 2; ++k) {
            const double hertz = k == 0 ? 550.0 + 250.0 * std::sin(3.0 * time) : 1700.0;
            const double turn = 2.0 * std::numbers::pi * hertz / double{kRate};
            const double now = pulse + 1.97 * std::cos(turn) * y[k][0] - 0.97 * y[k][1];
            y[k][1] = std::exchange(y[k][0], now);
            sum += now;
        }
        sample->data[n] =
            static_cast<float>(sum * std::max(0.0, std::sin(2.0 * std::numbers::pi * 4.0 * time)));
    }
    sample->writeGuardPoint();
    return sample;
}

struct SteadyLevel : testing::Test {
    std::shared_ptr<mokSample> sound = noiseSample(441000, kRate);
    RandomSource random;

    SteadyLevel() { random.seed(1); }

    /// Decibels of two seconds, once as many grains sound as will.
    double loudness(const Cloud& cloud, bool isSteady) {
        const auto window = makeEnvelope(cloud.envelope, random);
        mokGranulatorSF engine(sound.get(), window.get(), 24, kRate, 7);
        engine.granularOn = true;
        engine.setSteadyLevel(isSteady);
        engine.setPitch(0);
        engine.setJittering(5);
        engine.setDensity(cloud.density);
        engine.setLength(cloud.length);
        engine.setRndDensity(cloud.rndDensity);
        engine.setRndLength(cloud.rndLength);
        engine.setWidth(cloud.width);
        double power = 0.0;
        int frames = 0;
        StereoBlock block(kBlock);
        for (int i = 0; i < 350; ++i) {
            engine.GranularStreamProcessing(kBlock, block.from(0));
            if (i < 150) continue;
            for (int n = 0; n < kBlock; ++n, ++frames)
                power +=
                    double{block.left[n]} * block.left[n] + double{block.right[n]} * block.right[n];
        }
        return 10.0 * std::log10(power / frames);
    }

    /// From one grain at a time to more than there are voices, whatever shapes and spreads them.
    void expectHeld(double decibels) {
        const double one = loudness({.density = 10, .length = 100}, true);
        std::vector<Cloud> clouds;
        for (const float density : {12.0f, 50.0f, 200.0f, 1000.0f})
            for (const float overlap : {1.0f, 4.0f, 24.0f, 60.0f})
                clouds.push_back({.density = density, .length = 1000.0f * overlap / density});
        for (const float width : {0.0f, 0.5f, 1.0f}) clouds.push_back({.width = width});
        for (const float amount : {0.0f, 1.0f})
            clouds.push_back({.rndDensity = amount, .rndLength = amount});
        for (std::size_t i = 0; i < kEnvelopeMenu.size(); ++i) clouds.push_back({.envelope = i});
        double without = 0.0;
        for (const Cloud& cloud : clouds) {
            const double off = loudness(cloud, true) - one;
            EXPECT_NEAR(off, 0.0, decibels)
                << cloud.density << " Hz " << cloud.length << " ms width " << cloud.width << ' '
                << kEnvelopeMenu[cloud.envelope];
            without = std::max(without, std::abs(loudness(cloud, false) - one));
        }
        EXPECT_GT(without, 6.0); // or there would be nothing to hold
    }
};

TEST_F(SteadyLevel, HoldsNoiseWithinADecibelAndAHalf) {
    expectHeld(1.5);
}

TEST_F(SteadyLevel, HoldsAVoiceWithinThreeDecibels) {
    sound = voiceSample();
    expectHeld(3.0);
}

TEST_F(SteadyLevel, LeavesFewGrainsAsTheyAre) {
    const CloudShape one{.length = 0.1f,
                         .density = 10,
                         .rndDensity = 0,
                         .width = 0,
                         .windowEnergy = 0.375f,
                         .voices = 24};
    EXPECT_FLOAT_EQ(steadyLevel(one), 1.0f);
    CloudShape few = one;
    few.density = 0.5f;
    EXPECT_FLOAT_EQ(steadyLevel(few), 1.0f);
    CloudShape many = one;
    many.density = 160;
    EXPECT_FLOAT_EQ(steadyLevel(many), 0.25f);
    many.density = 1e9f; // more than there are voices
    EXPECT_NEAR(steadyLevel(many), 1.0 / std::sqrt(24.0), 1e-6);
    many.density = 160;
    many.rndDensity = 0.5f; // intervals are longer on average: by ln(3)
    EXPECT_NEAR(steadyLevel(many), std::sqrt(std::log(3.0) / 16.0), 1e-6);
    CloudShape wide = one;
    wide.width = 1;
    EXPECT_NEAR(steadyLevel(wide), std::sqrt(3.0), 1e-6);
    CloudShape silent = one;
    silent.windowEnergy = 0.0f;
    EXPECT_FLOAT_EQ(steadyLevel(silent), 1.0f);
}

} // namespace
} // namespace zephyra
