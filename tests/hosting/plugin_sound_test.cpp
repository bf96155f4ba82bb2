// What stands between a host's channels and the audio unit: bypass, layouts, rates, tail.

#include "tests/support/block_partition.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr std::uint32_t kFrames = 24000;

/// A plug-in that plays noise through its grains, at once and the same each time.
struct Plugged : HeardLog, PluginInstance {
    explicit Plugged(PluginKind kind, PluginSetup setup = {48000, 256})
        : PluginInstance(kind, [this](Instance& fresh) {
              hear(fresh);
              fresh.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
              fresh.random.seed(7);
          }) {
        const RunLoop::Scope main(system().instance.runLoop);
        system().stream().loadSound(noiseSample(30000, 44100));
        system().stream().setSeed(7);
        system().view._fadeInTime.setValue(0);
        system().stream().setDisplayed(ControlId::playStop, 1.0f);
        EXPECT_TRUE(prepare(setup));
    }
    bool set(ControlId id, float value) {
        const RunLoop::Scope main(system().instance.runLoop);
        return system().stream().setDisplayed(id, value);
    }
    /// Offline, in place: sound holds the input before and the output afterwards.
    void renderOver(StereoBlock& sound, std::uint32_t from, std::uint32_t to) {
        float* const at[2] = {sound.left.data() + from, sound.right.data() + from};
        renderOffline({to - from, {at[0], at[1]}, {at[0], at[1]}});
    }
};

StereoBlock noise(std::uint32_t frames) {
    StereoBlock sound(frames);
    const auto left = noiseSample(frames, 48000, 1), right = noiseSample(frames, 48000, 2);
    std::copy_n(left->getPtr(), frames, sound.left.data());
    std::copy_n(right->getPtr(), frames, sound.right.data());
    return sound;
}

TEST(PluginSound, BypassFadesEvenlyBothWaysAndTheSoundGoesOnBehindIt) {
    constexpr std::uint32_t on = 4800, back = 5000, again = 9600, off = 19200;
    for (const PluginKind kind : {PluginKind::effect, PluginKind::standalone}) {
        const StereoBlock input = noise(kFrames);
        StereoBlock made = input, heard = input;
        Plugged bypassed(kind), twin(kind);
        double share = 0;
        std::uint32_t from = 0;
        for (const std::uint32_t to : {on, back, again, off, kFrames}) {
            bypassed.setBypass(from == on || from == again);
            for (const auto frames :
                 randomPartition(static_cast<std::int32_t>(to - from), 900, to)) {
                const std::uint32_t end = from + static_cast<std::uint32_t>(frames);
                bypassed.renderOver(heard, from, end);
                twin.renderOver(made, from, end);
                for (std::uint32_t n = from; n < end; ++n) {
                    share = std::clamp(share + (bypassed.isBypassed() ? 1 : -1) / 480.0, 0.0, 1.0);
                    const float dry = kind == PluginKind::effect ? input.right[n] : 0.0f;
                    ASSERT_NEAR(heard.right[n], made.right[n] + share * double{dry - made.right[n]},
                                2e-6)
                        << n;
                }
                from = end;
            }
        }
        EXPECT_EQ(heard.left.back(), made.left.back());
        EXPECT_EQ(heard.left[off - 1], kind == PluginKind::effect ? input.left[off - 1] : 0.0f);
    }
}

TEST(PluginSound, GoesFromAndToTheChannelsThatAHostHas) {
    const StereoBlock input = noise(kFrames);
    const std::vector<float> none(kFrames);
    const float *const left = input.left.data(), *const right = input.right.data();
    struct Row {
        const float *asked[2], *same[2]; // input that is the same to the unit
    };
    for (const auto& [asked, same] : std::initializer_list<Row>{{{left, nullptr}, {left, left}},
                                                                {{}, {none.data(), none.data()}},
                                                                {{left, right}, {left, right}}}) {
        StereoBlock stereo(kFrames);
        std::vector<float> mono(kFrames, 9.0f);
        Plugged one(PluginKind::effect), two(PluginKind::effect);
        one.renderOffline({kFrames, {asked[0], asked[1]}, {mono.data(), nullptr}});
        two.renderOffline({kFrames, {same[0], same[1]}, {stereo.left.data(), stereo.right.data()}});
        for (std::size_t n = 0; n < kFrames; ++n)
            ASSERT_EQ(mono[n], (stereo.left[n] + stereo.right[n]) / 2) << n;
        if (!asked[0] || asked[1]) continue;
        one.setBypass(true);
        EXPECT_TRUE(one.prepare({48000, 256}));
        one.renderOffline({kFrames, {left, nullptr}, {mono.data(), nullptr}});
        EXPECT_EQ(mono, input.left) << "bypassed from the first frame";
        one.setBypass(false);
        one.render({kFrames, {left, nullptr}, {mono.data(), nullptr}});
        EXPECT_NE(mono.back(), input.left.back());
    }
}

TEST(PluginSound, IsFiniteAndBoundedAtEveryRateWhateverComesIn) {
    constexpr float kNan = std::numeric_limits<float>::quiet_NaN(),
                    kInfinity = std::numeric_limits<float>::infinity();
    constexpr float kSorts[] = {0.5f, kNan, 1e-40f, -kInfinity, -0.25f, kInfinity, -1e-42f, 0.0f};
    std::vector<float> input(20000), left(input.size()), right(input.size());
    for (std::size_t n = 0; n < input.size(); ++n) input[n] = kSorts[n % std::size(kSorts)];
    for (const double rate : {8000.0, 22050.0, 44100.0, 96000.0, 192000.0, 384000.0})
        for (const bool offline : {false, true}) {
            Plugged plugged(PluginKind::effect, {rate, 64});
            ASSERT_TRUE(plugged.set(ControlId::echoSwitch, 1.0f));
            float peak = 0;
            for (const std::uint32_t frames : {64u, 5000u, 0u, 1u, 20000u, 20000u, 20000u}) {
                plugged.setBypass(frames == 5000 || !plugged.isBypassed());
                const PluginBlock block{
                    frames, {input.data(), input.data()}, {left.data(), right.data()}};
                offline ? plugged.renderOffline(block) : plugged.render(block);
                for (const auto* const side : {&left, &right})
                    for (std::uint32_t n = 0; n < frames; ++n) {
                        const float sample = (*side)[n];
                        ASSERT_TRUE(sample == 0.0f || std::isnormal(sample)) << rate << " " << n;
                        peak = std::max(peak, std::abs(sample));
                    }
            }
            EXPECT_TRUE(peak > 0.1f && peak < 30.0f) << rate << " " << peak;
        }
    Plugged plugged(PluginKind::effect);
    for (const double rate : {0.0, 7999.0, 384001.0, double{kNan}, double{kInfinity}}) {
        const auto refused = plugged.prepare({rate, 64});
        ASSERT_FALSE(refused) << rate;
        EXPECT_NE(refused.message().find("8000 to 384000"), std::string::npos);
        left[9] = right[9] = 9.0f;
        plugged.render({10, {input.data(), nullptr}, {left.data(), right.data()}});
        EXPECT_EQ(left[9] + right[9], 0.0f);
    }
}

TEST(PluginSound, IsOverWhenTheTailHasPassed) {
    for (const double rate : {22050.0, 48000.0})
        for (const float gain : {-1.0f, 0.0f, 0.5f}) {
            Plugged plugged(PluginKind::instrument, {rate, 512});
            plugged.set(ControlId::echoSwitch, gain < 0 ? 0.0f : 1.0f);
            for (const auto id : {ControlId::leftDelay, ControlId::rightDelay})
                plugged.set(id, 0.4f);
            for (const auto id : {ControlId::leftGain, ControlId::rightGain}) plugged.set(id, gain);
            const auto second = static_cast<std::uint32_t>(rate);
            StereoBlock sound(20 * second);
            plugged.renderOver(sound, 0, 3 * second);
            const auto tail = static_cast<std::uint32_t>(plugged.tailSeconds() * rate);
            plugged.set(ControlId::playStop, 0.0f);
            plugged.renderOver(sound, 3 * second, 20 * second);
            const auto peak = [&](std::uint32_t from, std::uint32_t to) {
                float most = 0;
                for (; from < to; ++from) most = std::max(most, std::abs(sound.left[from]));
                return most;
            };
            EXPECT_LT(peak(3 * second + tail, 20 * second), 2e-3f * peak(second, 3 * second));
            const double echoes = gain < 0 ? 0.0 : gain > 0 ? 4.0 : 0.4;
            EXPECT_NEAR(plugged.tailSeconds(), 0.356 + echoes, 0.01) << rate << " " << gain;
        }
}

TEST(PluginSound, TailsOnAsLongAsLiveInputIsRemembered) {
    using enum ControlId;
    HostedPlugin fresh(PluginKind::effect);
    EXPECT_EQ(fresh.value(live), 1.0f);
    fresh.render(10);
    const struct {
        ControlId id;
        float value;
        double tail;
    } rows[] = {{length, 8.0f, 10.0 * 44100 / 48000 + 0.006},
                {length, 2000.0f, 10.0 * 44100 / 48000 + 2.5},
                {freeze, 1.0f, 0.25 + 0.5}, // grains of what is held
                {freeze, 0.0f, 10.0 * 44100 / 48000 + 2.5},
                {live, 0.0f, 0.25 + 0.5}, // of what was heard
                {length, 8.0f, 0.25 + 0.006}};
    for (const auto& [id, value, tail] : rows) {
        {
            const auto held = fresh.main();
            fresh.system().stream().setDisplayed(id, value);
        }
        fresh.render();
        EXPECT_NEAR(fresh.tailSeconds(), tail, 1e-2) << value;
    }
}

TEST(PluginSound, HalvesNoSampleIntoADenormal) {
    HostChannels channels(HostChannels::Passes::input);
    ASSERT_TRUE(channels.start(48000, 1));
    float mono = 0.0f;
    const HostCycle cycle = channels.open({.frames = 1, .output = {&mono}}, 0, 1);
    *cycle.output[0] = std::numeric_limits<float>::min();
    *cycle.output[1] = 0.0f;
    channels.close(cycle);
    EXPECT_EQ(mono, 0.0f);
}

} // namespace
} // namespace zephyra
