// Loudness against the values that the standard gives for sines.

#include "platform/sound/loudness.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

Loudness measure(const std::vector<float>& samples, std::uint32_t channels, double rate) {
    LoudnessMeter meter(channels, rate);
    const auto frames = static_cast<std::uint32_t>(samples.size()) / channels;
    meter.add(samples.data(), frames / 3); // in two blocks
    meter.add(samples.data() + std::size_t{frames / 3} * channels, frames - frames / 3);
    return meter.measure();
}

std::vector<float> sine(double amplitude, double seconds, double rate) {
    std::vector<float> samples(static_cast<std::size_t>(seconds * rate));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = float(amplitude * std::sin(2.0 * 3.14159265358979 * 997.0 * double(i) / rate));
    return samples;
}

TEST(Loudness, OfASineAt997HzIsThreeDecibelsBelowItsPeakAndOfTwoChannelsThreeMore) {
    for (const double rate : {22050.0, 44100.0, 96000.0})
        for (const double decibels : {0.0, -20.0}) {
            const auto mono = sine(std::pow(10.0, decibels / 20.0), 2.0, rate);
            const auto loudness = measure(mono, 1, rate);
            EXPECT_NEAR(loudness.integratedLufs.value(), decibels - 3.01, 0.05) << rate;
            EXPECT_NEAR(loudness.peakDecibels.value(), decibels, 0.05) << rate;
            std::vector<float> stereo;
            for (const float sample : mono) stereo.insert(stereo.end(), {sample, -sample});
            EXPECT_NEAR(measure(stereo, 2, rate).integratedLufs.value(), decibels, 0.05) << rate;
        }
}

TEST(Loudness, IsNoneForSilenceAndOnlyAPeakForAClick) {
    const auto silence = measure(std::vector<float>(44100), 1, 44100.0);
    EXPECT_FALSE(silence.peakDecibels || silence.integratedLufs);
    const auto click = measure({0.0f, 0.0f, 0.1f, -0.5f}, 2, 44100.0);
    EXPECT_NEAR(click.peakDecibels.value(), -6.0206, 1e-4);
    EXPECT_FALSE(click.integratedLufs);
}

} // namespace
} // namespace zephyra
