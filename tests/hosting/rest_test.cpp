// A host in real time that leaves out what nobody hears, beside one that renders everything.

#include "hosting/hosted_instance.h"
#include "hosting/unit_host.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr std::uint32_t kBlock = 512;
constexpr double kRate = 44100;

struct Rested : HeardLog, HostedInstance {
    Rested(FourCharCode type, bool mayRest)
        : HostedInstance(type, [this](Instance& fresh) { hear(fresh), fresh.random.seed(7); }),
          mayRest_(mayRest) {
        instance.runLoop.setClock(RunLoop::Clock::sample);
        const RunLoop::Scope main(instance.runLoop);
        connect();
        host.time.setTempo(120);
        host.time.setTransport(true);
        host.time.reportContext(true);
        EXPECT_EQ(host.start({kRate, kBlock}), audio_unit_status::noError);
        instance.runLoop.finishWork();
        stream().setSeed(7);
    }
    void load() {
        const RunLoop::Scope main(instance.runLoop);
        stream().loadSound(noiseSample(30000, kRate));
    }
    /// A block of input that is level all through, after MAIN has had its turn.
    void block(float level = 0.0f) {
        instance.runLoop.advance(static_cast<double>(host.time.rendered()) / kRate);
        input.assign(kBlock, level);
        std::fill(out.left.begin(), out.left.end(), 9.0f);
        const HostCycle cycle{
            kBlock, {input.data(), input.data()}, {out.left.data(), out.right.data()}};
        rested += mayRest_ && unit->rests() && level == 0.0f;
        mayRest_ ? host.renderOrRest(cycle, nullptr) : host.render(cycle, nullptr);
    }
    void set(ControlId id, float value) {
        const RunLoop::Scope main(instance.runLoop);
        ASSERT_TRUE(id == ControlId::dryWet ? (unit->setDryWet(value), true)
                                            : stream().setDisplayed(id, value));
    }
    float peak() const {
        float most = 0;
        for (std::size_t n = 0; n < kBlock; ++n)
            most = std::max({most, std::abs(out.left[n]), std::abs(out.right[n])});
        return most;
    }

    UnitHost host{*unit, instance};
    StereoBlock out{kBlock};
    std::vector<float> input;
    int rested = 0;

private:
    const bool mayRest_;
};

constexpr int kSecond = 87; // in blocks

TEST(Rest, LosesNoEvent) {
    Rested resting(component_type::instrument, true);
    resting.block();
    ASSERT_TRUE(resting.unit->rests());
    AURenderEvent event;
    event.eventType = AURenderEventType::parameter;
    event.parameter = {static_cast<AUParameterAddress>(ControlId::pitch), 5.0f, 0};
    resting.host.renderOrRest({1, {}, {resting.out.left.data(), resting.out.right.data()}}, &event);
    EXPECT_EQ(loadParameter(resting.unit->record(), event.parameter.parameterAddress), 5.0f);
}

TEST(Rest, IsNotHeardWhateverChangesMeanwhile) {
    using enum ControlId;
    struct Row {
        FourCharCode type;
        ControlId changed;
        float value;
    };
    for (const auto& [type, changed, value] :
         {Row{component_type::instrument, amplitude, 0.9f},
          {component_type::instrument, leftDelay, 1.5f},
          {component_type::instrument, rightGain, 0.9f},
          {component_type::instrument, ringModulationAmount, 1.0f},
          {component_type::effect, dryWet, 20.0f},
          {component_type::effect, density, 30.0f}}) {
        Rested all(type, false), resting(type, true);
        const auto both = [&](auto&& act) { act(all), act(resting); };
        both([](Rested& each) {
            each.load();
            each.set(echoSwitch, 1);
            each.set(ringModulationSwitch, 1);
            each.set(playStop, 1);
        });
        double furthest = 0;
        float loudest = 0;
        int before = 0;
        for (int n = 0; n < 50 * kSecond; ++n) {
            if (n == 2 * kSecond || n == 44 * kSecond)
                both([](Rested& each) { each.set(playStop, 0); });
            if (n == 36 * kSecond) before = resting.rested;
            if (n == 36 * kSecond) both([&](Rested& each) { each.set(changed, value); });
            if (n == 43 * kSecond) both([](Rested& each) { each.set(playStop, 1); });
            both([n](Rested& each) { each.block(n == 36 * kSecond + 1 ? 0.25f : 0.0f); });
            for (std::size_t i = 0; i < kBlock; ++i)
                furthest =
                    std::max<double>(furthest, std::abs(all.out.right[i] - resting.out.right[i]));
            if (n > 43 * kSecond) loudest = std::max(loudest, resting.peak());
        }
        EXPECT_LT(furthest, 1e-6) << int(changed);
        EXPECT_GT(loudest, 0.01f) << int(changed);
        EXPECT_GT(before, 10 * kSecond) << int(changed);
        EXPECT_EQ(all.host.time.beatPosition(), resting.host.time.beatPosition());
    }
}

TEST(Rest, OfLiveInputBeginsWhenTheWholeBufferIsSilentAndEndsWithTheFirstSound) {
    Rested resting(component_type::effect, true);
    resting.set(ControlId::playStop, 1); // a fresh effect's sound is LIVE
    resting.set(ControlId::scanning, 0.1f);
    for (int n = 0; n < kSecond; ++n) resting.block(0.25f);
    for (int n = 0; n < 9 * kSecond; ++n) resting.block();
    EXPECT_EQ(resting.rested, 0);
    for (int n = 0; n < 5 * kSecond; ++n) resting.block();
    EXPECT_GT(resting.rested, 2 * kSecond);
    EXPECT_EQ(resting.peak(), 0.0f);
    const float scan = resting.stream().engine().currentScanPosition();
    resting.block();
    EXPECT_NE(resting.stream().engine().currentScanPosition(), scan);

    const int rested = resting.rested;
    resting.block(0.25f);
    EXPECT_GT(resting.peak(), 0.2f);
    float peak = 0.0f; // of grains of what came in
    for (int n = 0; n < 9 * kSecond; ++n) resting.block(), peak = std::max(peak, resting.peak());
    EXPECT_EQ(resting.rested, rested);
    EXPECT_GT(peak, 0.01f);

    // Nor while it is stopped, or what was heard would stay where silence belongs.
    resting.block(0.25f);
    resting.set(ControlId::playStop, 0);
    for (int n = 0; n < 9 * kSecond; ++n) resting.block();
    EXPECT_EQ(resting.rested, rested);

    // A sound in the buffer's place is none to rest on.
    resting.set(ControlId::playStop, 1);
    for (int n = 0; n < 12 * kSecond; ++n) resting.block();
    EXPECT_TRUE(resting.unit->rests());
    const std::vector<float> captured(20000, 0.5f);
    ASSERT_TRUE(resting.stream().setCaptured(captured, kRate));
    EXPECT_FALSE(resting.unit->rests());
}

} // namespace
} // namespace zephyra
