#include "effects/stereo_echo.h"

#include "platform/flush_denormals.h"
#include "tests/effects/module_test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <thread>

namespace zephyra {
namespace {

namespace echo = delay_stereo_forward;
using testing::Each;

constexpr std::size_t kSettled = 600000; // samples after which every glide stands

class StereoEcho : public testing::Test {
protected:
    void set(double timeL, double timeR, double feedbackR, double feedbackL) {
        echo::setparameter(module.get(), echo::kTimeL, timeL);
        echo::setparameter(module.get(), echo::kTimeR, timeR);
        echo::setparameter(module.get(), echo::kFeedbackR, feedbackR);
        echo::setparameter(module.get(), echo::kFeedbackL, feedbackL);
    }
    /// What the settled echo answers to an impulse of 1 on both sides.
    StereoSignal impulseResponse(std::size_t frames) {
        const FlushDenormals flush;
        StereoSignal silence(kSettled), impulse(frames);
        run(silence);
        impulse.left[0] = impulse.right[0] = 1;
        run(impulse);
        return impulse;
    }
    std::int32_t run(StereoSignal& signal) { return performInPlace(echo::perform, module, signal); }

    Module module{echo::create(44100, 256), echo::destroy};
};

TEST_F(StereoEcho, WithoutFeedbackRepeatsAnImpulseOnceAtEqualHeight) {
    set(441, 300, 0, 0);
    const StereoSignal out = impulseResponse(2000);
    for (std::size_t n = 0; n < 2000; ++n) {
        EXPECT_NEAR(out.left[n], n == 0 || n == 441 ? 1 : 0, 1e-6) << n;
        EXPECT_NEAR(out.right[n], n == 0 || n == 300 ? 1 : 0, 1e-6) << n;
    }
}

TEST_F(StereoEcho, FeedbackScalesEveryRepeatAfterTheFirst) {
    set(100, 80, 0.25, 0.5);
    const StereoSignal out = impulseResponse(401);
    for (int repeat = 1; repeat <= 4; ++repeat) {
        EXPECT_NEAR(out.left[100 * repeat], std::pow(0.5, repeat - 1), 1e-6);
        EXPECT_NEAR(out.right[80 * repeat], std::pow(0.25, repeat - 1), 1e-6);
    }
}

TEST_F(StereoEcho, DelaysByAtLeastOneAndAtMostTwoHundredThousandSamples) {
    set(0, 1e9, 0, 0);
    const StereoSignal out = impulseResponse(200002);
    EXPECT_FLOAT_EQ(out.left[1], 1);
    EXPECT_FLOAT_EQ(out.right[200000], 1);
    EXPECT_EQ(std::count(out.right.begin(), out.right.end(), 0.0f), 200000);
}

TEST_F(StereoEcho, RefusesUnknownParametersAndValuesThatAreNotFinite) {
    set(1, 2, 3, 4);
    echo::setparameter(module.get(), echo::kTimeR, std::nan(""));
    echo::setparameter(module.get(), echo::kFeedbackR, std::numeric_limits<double>::infinity());
    echo::setparameter(module.get(), 4, 7);
    echo::setparameter(module.get(), -1, 7);
    for (int index = 0; index < 4; ++index)
        EXPECT_EQ(echo::getparameter(module.get(), index), index + 1);
    EXPECT_EQ(echo::getparameter(module.get(), 4), 0);
}

TEST_F(StereoEcho, StaysUsableAfterTheFarthestGlidesAndBadInput) {
    constexpr double kHuge = std::numeric_limits<double>::max();
    StereoSignal bad(3000, std::numeric_limits<float>::infinity());
    bad.left[7] = std::nanf("");
    for (double value : {kHuge, -kHuge, kHuge}) {
        set(value, value, value, value);
        run(bad);
    }
    set(50, 50, 0, 0);
    StereoSignal quiet(3 * kSettled);
    const FlushDenormals flush;
    run(quiet);
    echo::clearBuffer(module.get());
    run(quiet);
    for (float sample : quiet.left) ASSERT_TRUE(std::isfinite(sample));
}

TEST_F(StereoEcho, ClearBufferSilencesTheTailAndResetForgetsTheParametersToo) {
    set(50, 70, 0.5, 0.5);
    StereoSignal noise(1000, 0.5f), silence(1000);
    run(noise);
    echo::clearBuffer(module.get());
    run(silence);
    EXPECT_THAT(silence.left, Each(0.0f));
    EXPECT_EQ(echo::getparameter(module.get(), echo::kTimeR), 70);
    echo::reset(module.get());
    EXPECT_EQ(echo::getparameter(module.get(), echo::kTimeR), 0);
    StereoSignal after(500, 0.25f), fresh(500, 0.25f);
    run(after);
    performInPlace(echo::perform, Module{echo::create(44100, 256), echo::destroy}, fresh);
    EXPECT_EQ(after.left, fresh.left);
    EXPECT_EQ(after.right, fresh.right);
}

TEST_F(StereoEcho, ANullChannelIsAnErrorUntilReset) {
    StereoSignal signal(16, 0.5f);
    float* left = signal.left.data();
    EXPECT_EQ(echo::perform(module.get(), left, nullptr, left, left, 16), 101);
    EXPECT_EQ(run(signal), 101);
    EXPECT_THAT(signal.left, Each(0.5f));
    echo::reset(module.get());
    EXPECT_EQ(run(signal), 0);
}

TEST_F(StereoEcho, DescribesItself) {
    ASSERT_EQ(module->parameterCount, 4);
    const char* names[] = {"timeL", "timeR", "feedbackR", "feedbackL"};
    for (int n = 0; n < 4; ++n) EXPECT_STREQ(module->parameters[n].name, names[n]);
    EXPECT_EQ(module->parameters[0].defaultValue, 0);
    EXPECT_EQ(module->parameters[3].outputMax, 1);
    EXPECT_STREQ(module->outputNames[1], "out2");
    EXPECT_EQ(module->vectorSize, 256);
    for (double refused : {0.0, -1.0, std::nan("")}) echo::setSampleRate(module.get(), refused);
    EXPECT_EQ(module->sampleRate, 44100);
    echo::setSampleRate(module.get(), 96000);
    EXPECT_EQ(module->sampleRate, 96000);
}

TEST_F(StereoEcho, ParametersTurnWhileItPerforms) {
    std::atomic<bool> done = false;
    std::thread turning([&] {
        for (int n = 0; !done; ++n) set(n % 9000, n % 7, 0.5, (n % 10) * 0.1);
    });
    for (int block = 0; block < 300; ++block) {
        StereoSignal signal(256, 0.1f);
        ASSERT_EQ(run(signal), 0);
        for (float sample : signal.right) ASSERT_LT(std::abs(sample), 10);
    }
    done = true;
    turning.join();
}

} // namespace
} // namespace zephyra
