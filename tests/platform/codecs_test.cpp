// What the FLAC and AAC codecs write they read back, and what they cannot hold they refuse.
#include "platform/files/written_file.h"
#include "platform/sound/aac_codec.h"
#include "platform/sound/flac_codec.h"
#include "tests/support/testing.h"

#include <unistd.h>

namespace zephyra {
namespace {

std::vector<float> sine(std::size_t frames, double level) {
    std::vector<float> samples(frames);
    for (std::size_t i = 0; i < frames; ++i)
        samples[i] = static_cast<float>(std::sin(0.01 * static_cast<double>(i)) * level);
    samples[frames / 2] = static_cast<float>(-level);
    return samples;
}

TEST(FlacCodec, KeepsSoundsTo24BitsOfTheLoudestAtAnyLevelAndRate) {
    for (const double level : {0.25, 1.0, 7.5, 3e38})
        for (const double rate : {1.0, 44100.0, 192000.0, 655350.0}) {
            const auto samples = sine(70000, level); // more than one block
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
    const auto flac = encodeFlac(sine(300, 0.7), 44100.0).value().bytes;
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

struct AacCodecTest : testing::Test {
    void SetUp() override { ASSERT_TRUE(aacModule().ok()) << aacModule().message(); }
    ~AacCodecTest() override { fs::remove(path_); }

    /// A tone of 441 Hz and amplitude 0.5 in every channel; empty on success, else the reason.
    std::string writeTone(double rate, std::uint32_t channels, std::uint32_t frames) {
        std::vector<std::int16_t> tone(frames);
        for (std::uint32_t i = 0; i < frames; ++i)
            tone[i] = std::int16_t(16384 * std::sin(6.283185307179586 * 441.0 * i / rate));
        const std::vector<const std::int16_t*> arrays(channels, tone.data());
        const AacModule& module = *aacModule().value();
        void* writer = nullptr;
        WrittenFile file;
        EXPECT_FALSE(file.open(path_));
        const AacTarget target = aacTarget(file);
        if (module.openWriter(&target, rate, channels, &writer, reason_, sizeof reason_))
            return reason_;
        const bool failed = module.write(writer, arrays.data(), frames, reason_, sizeof reason_);
        const bool unfinished = module.closeWriter(writer, reason_, sizeof reason_);
        return failed || unfinished ? reason_ : "";
    }

    /// In the working folder: an absolute path could not be taken for a protocol and its address.
    const std::string path_ = "aac:codec" + std::to_string(getpid()) + ".m4a";
    char reason_[200] = "";
};

TEST_F(AacCodecTest, readsBackTheToneAtItsExactLengthInBlocksOfAnySize) {
    const std::uint32_t cases[][4] = {{44100, 1, 44100, 777}, {48000, 2, 10000, 1024},
                                      {8000, 2, 5000, 1},     {96000, 6, 30000, 4096},
                                      {44100, 1, 1, 64},      {44100, 1, 2048, 3}};
    for (const auto& [rate, channels, frames, most] : cases) {
        SCOPED_TRACE(testing::Message() << rate << " Hz, " << channels << " channels");
        ASSERT_EQ(writeTone(rate, channels, frames), "");
        const AacModule& module = *aacModule().value();
        AacTrack track;
        void* reader = nullptr;
        ASSERT_EQ(module.openReader(path_.c_str(), &track, &reader, reason_, 200), 0) << reason_;
        EXPECT_EQ(std::tuple(track.sampleRate, track.channels, track.claimedFrames),
                  std::tuple(rate, channels, frames));
        std::vector<float> block(most * channels);
        std::uint32_t got = 0, total = 0;
        double error = 0.0;
        while (module.read(reader, block.data(), most, &got, reason_, 200) == 0 && got > 0)
            for (std::uint32_t i = 0; i < got; ++i, ++total)
                error += std::pow(block[i * channels] -
                                      0.5 * std::sin(6.283185307179586 * 441.0 * total / rate),
                                  2);
        module.closeReader(reader);
        EXPECT_EQ(total, frames);
        EXPECT_LT(std::sqrt(error / frames), 0.02); // late or early by one frame is 0.022
    }
}

TEST_F(AacCodecTest, refusesWhatTheFormatCannotHold) {
    EXPECT_THAT(writeTone(44123, 1, 10), HasSubstr("no such sample rate; 44100 or 48000"));
    EXPECT_THAT(writeTone(44100.5, 1, 10), HasSubstr("no such sample rate"));
    EXPECT_THAT(writeTone(44100, 0, 10), HasSubstr("1 to 8 channels"));
    EXPECT_THAT(writeTone(44100, 9, 10), HasSubstr("1 to 8 channels"));
}

} // namespace
} // namespace zephyra
