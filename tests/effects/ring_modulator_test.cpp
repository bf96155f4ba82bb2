#include "effects/ring_modulator.h"

#include "tests/effects/module_test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace zephyra {
namespace {

using testing::Each;

constexpr std::size_t kSettled = 40000; // samples after which the amount stands

class RingModulator : public testing::Test {
protected:
    void set(double dryWet, double freq) {
        RM::setparameter(module.get(), RM::kDryWet, dryWet);
        RM::setparameter(module.get(), RM::kFreq, freq);
    }
    std::int32_t run(StereoSignal& signal) { return performInPlace(RM::perform, module, signal); }
    std::int32_t run(StereoSignal&& signal) { return run(signal); }

    Module module{RM::create(44100, 256), RM::destroy};
};

TEST_F(RingModulator, PassesTheInputWithoutAmountAndAtFrequencyZero) {
    for (double dryWet : {0.0, 1.0}) {
        RM::reset(module.get());
        set(dryWet, dryWet == 0 ? 220 : 0);
        StereoSignal signal(1000, 0.7f);
        ASSERT_EQ(run(signal), 0);
        EXPECT_THAT(signal.left, Each(0.7f));
    }
}

TEST_F(RingModulator, MultipliesBothSidesByACosineOfItsFrequency) {
    for (double rate : {44100.0, 96000.0}) {
        RM::setSampleRate(module.get(), rate);
        RM::reset(module.get());
        set(1, 0);
        run(StereoSignal(kSettled));
        set(1, 1000);
        StereoSignal signal(300, 0.5f);
        std::fill(signal.right.begin(), signal.right.end(), -2.0f);
        run(signal);
        for (std::size_t n = 0; n < 300; ++n) {
            const double turns = static_cast<double>(n + 1) * 1000 / rate;
            const double cosine = std::cos(2 * std::numbers::pi * turns);
            ASSERT_NEAR(signal.left[n], 0.5 * cosine, 1e-6) << n;
            ASSERT_NEAR(signal.right[n], -2 * cosine, 1e-6) << n;
        }
    }
}

TEST_F(RingModulator, AJumpOfTheAmountIsSixtyThreePercentThereAfter702Samples) {
    set(0, 11025);
    run(StereoSignal(2)); // two quarter turns: the cosine stands at -1
    set(1, 0);
    StereoSignal signal(702, 1);
    run(signal);
    EXPECT_NEAR(signal.left.back(), 1 - 2 * (1 - std::exp(-1)), 1e-3);
}

TEST_F(RingModulator, RefusesUnknownParametersAndValuesThatAreNotFinite) {
    set(0.5, 220);
    for (double refused : {std::nan(""), -std::numeric_limits<double>::infinity()})
        set(refused, refused);
    RM::setparameter(module.get(), 2, 7);
    RM::setparameter(module.get(), -1, 7);
    EXPECT_EQ(RM::getparameter(module.get(), RM::kDryWet), 0.5);
    EXPECT_EQ(RM::getparameter(module.get(), RM::kFreq), 220);
}

TEST_F(RingModulator, StaysFiniteAtTheEndsOfItsParameters) {
    constexpr double kHuge = std::numeric_limits<double>::max();
    RM::setSampleRate(module.get(), kModuleMinSampleRate);
    RM::setSampleRate(module.get(), 0.001); // would make the increment infinite
    for (double value : {kHuge, -kHuge, kHuge}) {
        set(value, value);
        run(StereoSignal(1000, 1));
    }
    set(0, 0.1);
    run(StereoSignal(2000000));
    StereoSignal signal(1000, 0.5f);
    run(signal);
    for (float sample : signal.left) ASSERT_TRUE(std::isfinite(sample));
}

TEST_F(RingModulator, ANullChannelIsAnErrorUntilReset) {
    StereoSignal signal(16, 0.5f);
    float* left = signal.left.data();
    set(1, 5000);
    EXPECT_EQ(RM::perform(module.get(), left, left, left, nullptr, 16), 101);
    EXPECT_EQ(run(signal), 101);
    EXPECT_THAT(signal.left, Each(0.5f));
    RM::reset(module.get());
    EXPECT_EQ(RM::getparameter(module.get(), RM::kFreq), 0);
    EXPECT_EQ(run(signal), 0);
}

} // namespace
} // namespace zephyra
