#include "engine/grain_voice.h"
#include "tests/support/literal_stream.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr float kRate = 1024.0f; // envelope increments of 2^-n are exact, and so is a grain's end
constexpr float kUnwritten = 77.0f;

std::vector<float> process(mokGrain& grain, int count) {
    std::vector<float> out(static_cast<std::size_t>(count), kUnwritten);
    grain.Processing(out.data(), count);
    return out;
}

/// source[n] = n, so that a sample is the position it was read at.
std::unique_ptr<mokSample> ramp(std::uint64_t frames) {
    auto sample = std::make_unique<mokSample>(frames, kRate);
    for (std::uint64_t n = 0; n < sample->size; ++n) sample->data[n] = static_cast<float>(n);
    sample->writeGuardPoint();
    return sample;
}

struct Voice {
    std::unique_ptr<mokSample> source;
    mokWindow envelope{64, kWindowRectangular};
    mokGrain grain;

    explicit Voice(std::unique_ptr<mokSample> sound)
        : source(std::move(sound)), grain(source.get(), &envelope, kRate, 1) {}

    void begin(float frequency, double position, float length, float amplitude = 1.0f) {
        grain.start();
        grain.setParameters(amplitude, frequency, position, length);
    }
};

TEST(GrainVoice, MakesItsOwnSineAndHanningWithoutTables) {
    mokGrain grain(nullptr, nullptr, 44100, 1);
    EXPECT_TRUE(grain.ownsSource && grain.ownsEnvelope);
    EXPECT_EQ(grain.phaseIncrement, 440.0f / 44100.0f);
    EXPECT_EQ(grain.envelopeIncrement, (1.0f / 85.0f) / 44100.0f);
    grain.start();
    grain.setParameters(1.0f, 441.0f, 0.0, 0.1f);
    const auto out = process(grain, 4420); // rounding ends it a few samples early or late
    for (int n : {100, 1000, 2205, 4000}) {
        const double t = n + 1;
        const double expected =
            std::sin(2 * std::numbers::pi * std::fmod(t / 100, 1.0) * 4096 / 4096) *
            (0.5 - 0.5 * std::cos(2 * std::numbers::pi * t / 4410));
        EXPECT_NEAR(out[static_cast<std::size_t>(n)], expected, 2e-3) << n;
    }
    EXPECT_FALSE(grain.active);
}

TEST(GrainVoice, EndsWithZerosAndLowersTheCountOncePerSampleLeft) {
    Voice voice(ramp(100));
    mokGrain::_actives = 10;
    voice.begin(kRate / 100, 0.5, 8 / kRate);
    EXPECT_EQ(mokGrain::_actives, 11);
    const auto out = process(voice.grain, 12);
    EXPECT_NE(out[6], 0.0f);
    for (std::size_t n = 7; n < 12; ++n) EXPECT_EQ(out[n], 0.0f) << n;
    EXPECT_FALSE(voice.grain.active);
    EXPECT_EQ(mokGrain::_actives, 6);
    mokGrain::_actives = 1;
    voice.begin(kRate / 100, 0.5, 2 / kRate);
    process(voice.grain, 100);
    EXPECT_EQ(mokGrain::_actives, 0);
}

TEST(GrainVoice, KeepsEveryFieldFiniteAndEveryReadInsideItsTables) {
    const float odd[] = {0.0f, -1.0f, 1e-45f, 1e30f, -3e38f, 3e38f, INFINITY, -INFINITY, NAN};
    for (std::uint64_t frames : {1u, 2u, 4u, 5u, 16u, 1000u})
        for (float frequency : odd)
            for (float position : odd)
                for (float length : odd) {
                    auto tiny = std::make_unique<mokSample>(16, kRate);
                    tiny->size = frames < 16 ? frames : 16; // as a buffer of that size would be
                    tiny->writeGuardPoint();
                    Voice voice(std::move(tiny));
                    voice.begin(frequency, double{position}, length);
                    const mokGrain& g = voice.grain;
                    for (float sample : process(voice.grain, 40))
                        ASSERT_TRUE(std::isfinite(sample));
                    ASSERT_TRUE(std::isfinite(g.readPhase) && std::isfinite(g.phaseIncrement) &&
                                std::isfinite(g.envelopePhase) &&
                                std::isfinite(g.envelopeIncrement) && std::isfinite(g.length) &&
                                std::isfinite(g.frequency))
                        << frames << ' ' << frequency << ' ' << position << ' ' << length;
                }
}

} // namespace
} // namespace zephyra
