#include "platform/sound/flac_codec.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

std::vector<float> tone(std::size_t frames, double level) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = static_cast<float>(std::sin(0.01 * static_cast<double>(i)) * level);
    samples[frames / 2] = static_cast<float>(-level);
    return samples;
}

TEST(FlacCodec, KeepsSoundsTo24BitsOfTheLoudestAtAnyLevelAndRate) {
    for (const double level : {0.25, 1.0, 7.5, 3e38})
        for (const double rate : {1.0, 44100.0, 192000.0, 655350.0}) {
            const auto samples = tone(70000, level); // more than one block
            const auto flac = must(encodeFlac(samples, rate));
            EXPECT_NEAR(flac.scale, std::max(level, 1.0), level * 1e-7);
            const auto sound = must(decodeFlac(flac.bytes, flac.scale, 70000));
            EXPECT_EQ(sound.sampleRate, rate);
            ASSERT_EQ(sound.samples.size(), samples.size());
            double most = 0.0;
            for (std::size_t i = 0; i < samples.size(); ++i)
                most = std::max(most, std::abs(double{sound.samples[i]} - samples[i]));
            EXPECT_LE(most, flac.scale / 8388608.0 * 1.25); // float rounds too
        }
}

TEST(FlacCodec, ReturnsSamplesOf24BitsUnchanged) {
    const std::vector<float> samples = {0.0f, -1.0f, 8388607.0f / 8388608.0f, 1.0f / 8388608.0f,
                                        -0.5f};
    const auto flac = encodeFlac(samples, 48000.0);
    EXPECT_EQ(decodeFlac(flac.value().bytes, 1.0, 5).value().samples, samples);
    // A scale that is none counts as 1.
    for (const double scale : {0.5, -2.0, std::nan(""), double{INFINITY}})
        EXPECT_EQ(decodeFlac(flac.value().bytes, scale, 5).value().samples, samples) << scale;
}

TEST(FlacCodec, RefusesWhatItCannotKeep) {
    const std::vector<float> one = {0.5f};
    for (const double rate : {0.0, 0.5, 44100.5, 65537.0, 655360.0, -1.0, std::nan("")})
        EXPECT_THAT(encodeFlac(one, rate).message(), HasSubstr("this rate")) << rate;
    EXPECT_THAT(encodeFlac({}, 44100.0).message(), HasSubstr("without samples"));
    EXPECT_THAT(encodeFlac(std::vector{std::nanf("")}, 44100.0).message(), HasSubstr("not finite"));
}

TEST(FlacCodec, RefusesBytesThatAreCutDamagedOrTooMuch) {
    const auto flac = encodeFlac(tone(300, 0.7), 44100.0).value().bytes;
    EXPECT_THAT(decodeFlac(flac, 1.0, 299).message(), HasSubstr("300 frames; at most 299"));
    for (std::size_t size = 0; size < flac.size(); ++size)
        EXPECT_FALSE(decodeFlac(std::span(flac).first(size), 1.0, 300).ok()) << size;
    // What follows the headers is protected by check sums.
    for (std::size_t at = flac.size() - 300; at < flac.size(); ++at) {
        auto damaged = flac;
        damaged[at] ^= std::byte{1};
        EXPECT_FALSE(decodeFlac(damaged, 1.0, 300).ok()) << at;
    }
}

} // namespace
} // namespace zephyra
