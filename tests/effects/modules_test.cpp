// The two effects as modules: what both promise, and what each of them does to a signal.

#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

namespace echo = delay_stereo_forward;

struct Signal {
    explicit Signal(std::size_t frames, float value = 0)
        : left(frames, value), right(frames, value) {}
    std::vector<float> left, right;
};

/// One of the two modules and its functions.
struct Module {
    CommonState* state;
    decltype(&echo::destroy) destroy;
    decltype(&echo::reset) reset;
    decltype(&echo::setSampleRate) setSampleRate;
    decltype(&echo::setparameter) setparameter;
    decltype(&echo::getparameter) getparameter;
    decltype(&echo::perform) perform;
    std::vector<std::string> parameters;

    void set(std::vector<double> values) {
        for (std::size_t n = 0; n < values.size(); ++n)
            setparameter(state, static_cast<std::int32_t>(n), values[n]);
    }
    std::vector<double> get() {
        std::vector<double> values;
        for (std::size_t n = 0; n < parameters.size(); ++n)
            values.push_back(getparameter(state, static_cast<std::int32_t>(n)));
        return values;
    }
    /// Runs the whole signal in place; the module's code.
    std::int32_t run(Signal& signal) {
        float *left = signal.left.data(), *right = signal.right.data();
        return perform(state, left, right, left, right,
                       static_cast<std::int32_t>(signal.left.size()));
    }
    Signal after(Signal signal) {
        EXPECT_EQ(run(signal), 0);
        return signal;
    }
};

struct Effects : testing::Test {
    ~Effects() override {
        for (const Module& module : modules) module.destroy(module.state);
    }
    Module modules[2] = {{echo::create(44100, 256),
                          echo::destroy,
                          echo::reset,
                          echo::setSampleRate,
                          echo::setparameter,
                          echo::getparameter,
                          echo::perform,
                          {"timeL", "timeR", "feedbackR", "feedbackL"}},
                         {RM::create(44100, 256),
                          RM::destroy,
                          RM::reset,
                          RM::setSampleRate,
                          RM::setparameter,
                          RM::getparameter,
                          RM::perform,
                          {"drywet", "freq"}}};
    Module &stereoEcho = modules[0], &ring = modules[1];
};

TEST_F(Effects, DescribeThemselvesAndRefuseWhatIsNoParameterNoNumberOrNoRate) {
    for (Module& module : modules) {
        const auto count = static_cast<std::int32_t>(module.parameters.size());
        ASSERT_EQ(module.state->parameterCount, count);
        std::vector<double> values;
        for (std::int32_t n = 0; n < count; ++n) {
            EXPECT_EQ(module.state->parameters[n].name, module.parameters[n]);
            values.push_back(n + 1);
        }
        EXPECT_EQ(module.state->parameters[1].outputMax, 1);
        EXPECT_STREQ(module.state->outputNames[1], "out2");
        EXPECT_EQ(module.state->vectorSize, 256);
        EXPECT_THAT(module.get(), Each(0));
        module.set(values);
        for (double refused : {std::nan(""), -HUGE_VAL})
            module.set(std::vector<double>(values.size(), refused));
        for (const std::int32_t none : {-1, count}) {
            module.setparameter(module.state, none, 7);
            EXPECT_EQ(module.getparameter(module.state, none), 0);
        }
        EXPECT_EQ(module.get(), values);
        for (double rate : {96000.0, 0.0, -1.0, 0.001, std::nan("")})
            module.setSampleRate(module.state, rate);
        EXPECT_EQ(module.state->sampleRate, 96000);
    }
}

TEST_F(Effects, AnswerANullChannelWithAnErrorUntilReset) {
    for (Module& module : modules) {
        Signal signal(16, 0.5f);
        module.set({1, 5000});
        float* left = signal.left.data();
        EXPECT_EQ(module.perform(module.state, left, left, left, nullptr, 16), 101);
        EXPECT_EQ(module.run(signal), 101);
        EXPECT_THAT(signal.left, Each(0.5f));
        module.reset(module.state);
        EXPECT_THAT(module.get(), Each(0));
        EXPECT_EQ(module.run(signal), 0);
    }
}

TEST_F(Effects, EchoRepeatsAnImpulseOnceAtEqualHeightAndThenByItsFeedback) {
    const FlushDenormals flush;
    const struct {
        double timeL, timeR, feedbackR, feedbackL;
        std::size_t periodL, periodR;
    } cases[] = {{441, 300, 0, 0, 441, 300},
                 {100, 80, 0.25, 0.5, 100, 80},
                 {0, 1e9, 0, 0, 1, 200000}}; // the ends of what it takes
    for (const auto& c : cases) {
        stereoEcho.set({c.timeL, c.timeR, c.feedbackR, c.feedbackL});
        stereoEcho.after(Signal(600000)); // after which every glide stands
        Signal impulse(200002);
        impulse.left[0] = impulse.right[0] = 1;
        const Signal out = stereoEcho.after(impulse);
        const auto height = [](std::size_t n, std::size_t period, double feedback) {
            if (n == 0 || n % period) return n == 0 ? 1.0 : 0.0;
            return std::pow(feedback, static_cast<double>(n / period) - 1);
        };
        for (std::size_t n = 0; n < out.left.size(); ++n) {
            ASSERT_NEAR(out.left[n], height(n, c.periodL, c.feedbackL), 1e-6) << n;
            ASSERT_NEAR(out.right[n], height(n, c.periodR, c.feedbackR), 1e-6) << n;
        }
    }
}

TEST_F(Effects, EchoFallsSilentWhenClearedAndForgetsItsParametersWhenReset) {
    stereoEcho.set({50, 70, 0.5, 0.5});
    stereoEcho.after(Signal(1000, 0.5f));
    echo::clearBuffer(stereoEcho.state);
    EXPECT_THAT(stereoEcho.after(Signal(1000)).left, Each(0.0f));
    EXPECT_EQ(stereoEcho.get(), (std::vector<double>{50, 70, 0.5, 0.5}));
    stereoEcho.after(Signal(1000, 0.5f));
    echo::reset(stereoEcho.state);
    const Signal after = stereoEcho.after(Signal(500, 0.25f));
    stereoEcho.destroy(stereoEcho.state);
    stereoEcho.state = echo::create(44100, 256);
    EXPECT_EQ(after.right, stereoEcho.after(Signal(500, 0.25f)).right);
}

TEST_F(Effects, RingMultipliesBothSidesByACosineOfItsFrequency) {
    for (double rate : {44100.0, 96000.0}) {
        RM::setSampleRate(ring.state, rate);
        RM::reset(ring.state);
        ring.set({0, 220});
        EXPECT_THAT(ring.after(Signal(1000, 0.7f)).left, Each(0.7f)) << "without amount";
        RM::reset(ring.state);
        ring.set({1, 0});
        EXPECT_THAT(ring.after(Signal(40000, 0.7f)).left, Each(0.7f)) << "at frequency zero";
        ring.set({1, 1000}); // the amount stands by now
        Signal signal(300, 0.5f);
        std::fill(signal.right.begin(), signal.right.end(), -2.0f);
        signal = ring.after(signal);
        for (std::size_t n = 0; n < 300; ++n) {
            const double turns = static_cast<double>(n + 1) * 1000 / rate;
            const double cosine = std::cos(2 * std::numbers::pi * turns);
            ASSERT_NEAR(signal.left[n], 0.5 * cosine, 1e-6) << n;
            ASSERT_NEAR(signal.right[n], -2 * cosine, 1e-6) << n;
        }
    }
}

} // namespace
} // namespace zephyra
