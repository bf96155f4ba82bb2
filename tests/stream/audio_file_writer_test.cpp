#include "stream/audio_file_writer.h"

#include "platform/log.h"
#include "tests/support/other_program.h"
#include "tests/support/temporary_folder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace zephyra {
namespace {

constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

class Writer : public EAFWrite {
public:
    OSStatus open(const std::filesystem::path& path, const char (&type)[5], std::uint32_t channels,
                  std::uint32_t bits = 16) {
        return openFileForWrite_sr_channels_wordLength_type(path, 44100, channels, bits,
                                                            fourCC(type));
    }
};

/// What another program reads, as the 16-bit values that were written.
std::vector<int> writtenShorts(const std::filesystem::path& file) {
    std::vector<int> shorts;
    for (const std::int32_t sample : decodedByOtherProgram(file)) shorts.push_back(sample / 65536);
    return shorts;
}

TEST(FileWriter, ChoosesTheDataFormatByType) {
    const struct {
        const char (&type)[5];
        const char (&code)[5];
        std::uint32_t flags, framesPerPacket, bits, bytes;
    } cases[] = {{"AIFC", "ima4", 0, 1, 0, 0},   {"AIFF", "lpcm", 14, 1, 16, 6},
                 {"NeXT", "lpcm", 14, 1, 16, 6}, {"caff", "lpcm", 14, 1, 16, 6},
                 {"Sd2f", "lpcm", 14, 1, 16, 6}, {"WAVE", "lpcm", 12, 1, 16, 6},
                 {"m4af", "aac ", 2, 1024, 0, 0}};
    EAFWrite writer;
    for (const auto& row : cases) {
        writer.SetupStreamAndFileFormatForType_withSR_channels_wordlength(fourCC(row.type), 48000,
                                                                          3, 20);
        const StreamDescription expected = {
            48000, fourCC(row.code), row.flags, row.bytes, row.framesPerPacket, row.bytes,
            3,     row.bits};
        EXPECT_EQ(writer.mType, fourCC(row.type));
        EXPECT_EQ(writer.mStreamFormat, expected) << row.type;
    }
    writer.SetupStreamAndFileFormatForType_withSR_channels_wordlength(fourCC("MPG3"), 48000, 2, 16);
    EXPECT_EQ(writer.mType, 0u);
}

TEST(FileWriter, LimitsFloatsInThePlaceWhereTheyCameFrom) {
    const struct {
        float given, kept;
        int stored;
    } cases[] = {{1.0f, 0.999f, 32735},
                 {0.9995f, 0.999f, 32735},
                 {-1.0f, -1.0f, -32768},
                 {-1.2f, -1.0f, -32768},
                 {0.5f, 0.5f, 16384},
                 {1.9f / 32768, 1.9f / 32768, 1},
                 {-1.9f / 32768, -1.9f / 32768, -1},
                 {kNotANumber, 0.0f, 0},
                 {kInfinity, 0.999f, 32735},
                 {-kInfinity, -1.0f, -32768}};
    TemporaryFolder folder;
    Writer writer;
    ASSERT_EQ(writer.open(folder / "a.wav", "WAVE", 1), 0);
    for (const auto& row : cases) {
        float sample = row.given;
        float* array[] = {&sample};
        EXPECT_EQ(writer.writeFloats_fromArray(1, array), 0u);
        EXPECT_EQ(sample, row.kept) << row.given;
    }
    ASSERT_EQ(writer.closeFile(), 0);
    const std::vector<int> stored = writtenShorts(folder / "a.wav");
    ASSERT_EQ(stored.size(), std::size(cases));
    for (std::size_t i = 0; i < stored.size(); ++i) EXPECT_EQ(stored[i], cases[i].stored) << i;
}

TEST(FileWriter, KeepsTheLowBitsOfUnlimitedFloats) {
    const struct {
        float given;
        int stored;
    } cases[] = {{1.0f, 32767},   {-1.0f, -32767}, {0.5f, 16383},   {-0.5f, -16383},
                 {2.0f, -2},      {-2.0f, 2},      {1e5f, -1},      {-1e5f, 0},
                 {kInfinity, -1}, {-kInfinity, 0}, {kNotANumber, 0}};
    TemporaryFolder folder;
    Writer writer;
    ASSERT_EQ(writer.open(folder / "a.wav", "WAVE", 3), 0);
    for (const auto& row : cases) {
        const float quarter = 0.25f;
        const StereoFloatArrays sides = {&row.given, &quarter};
        EXPECT_EQ(writer.writeFloatsMok_fromArray(1, &sides), 0u);
    }
    const StereoFloatArrays onlyRight = {nullptr, &cases[0].given};
    EXPECT_EQ(writer.writeFloatsMok_fromArray(1, &onlyRight), 0u);
    ASSERT_EQ(writer.closeFile(), 0);
    const std::vector<int> stored = writtenShorts(folder / "a.wav");
    ASSERT_EQ(stored.size(), 3 * (std::size(cases) + 1));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(stored[3 * i], cases[i].stored) << cases[i].given;
        EXPECT_EQ(stored[3 * i + 1], 8191);
        EXPECT_EQ(stored[3 * i + 2], 0) << "only two channels are filled";
    }
    EXPECT_EQ(stored[stored.size() - 3], 0);
    EXPECT_EQ(stored[stored.size() - 2], 32767);
}

TEST(FileWriter, FillsTheFirstTwoChannelsAlikeAndMissingOnesWithSilence) {
    TemporaryFolder folder;
    const std::int16_t shorts[] = {11, 12};
    float floats[] = {0.25f, -0.25f};
    const std::int16_t* someShorts[] = {nullptr, shorts, nullptr};
    float* someFloats[] = {nullptr, nullptr, floats};
    Writer writer;
    ASSERT_EQ(writer.open(folder / "a.caf", "caff", 3), 0);
    EXPECT_EQ(writer.writeShorts_fromArray(2, someShorts), 0u);
    EXPECT_EQ(writer.writeFloats_fromArray(2, someFloats), 0u);
    EXPECT_EQ(writer.writeShortsMok_fromArray(2, shorts), 0u);
    ASSERT_EQ(writer.closeFile(), 0);
    EXPECT_EQ(writtenShorts(folder / "a.caf"), (std::vector<int>{0, 11, 0, 0, 12, 0, 0, 0, 8192, 0,
                                                                 0, -8192, 11, 11, 0, 12, 12, 0}));
}

TEST(FileWriter, AnswersAllOnesWhenThereIsNothingToWrite) {
    TemporaryFolder folder;
    Writer writer;
    ASSERT_EQ(writer.open(folder / "a.wav", "WAVE", 1), 0);
    std::int16_t aShort = 5;
    float aFloat = 2.0f;
    const std::int16_t* shorts[] = {&aShort};
    float* floats[] = {&aFloat};
    const StereoFloatArrays sides = {&aFloat, &aFloat};
    for (const std::uint32_t answer :
         {writer.writeShorts_fromArray(0, shorts), writer.writeShorts_fromArray(1, nullptr),
          writer.writeFloats_fromArray(0, floats), writer.writeFloats_fromArray(1, nullptr),
          writer.writeShortsMok_fromArray(0, &aShort), writer.writeShortsMok_fromArray(1, nullptr),
          writer.writeFloatsMok_fromArray(0, &sides), writer.writeFloatsMok_fromArray(1, nullptr),
          writer.writeShortsMok_fromArray(0x80000000, &aShort)}) // 4 gigabytes a buffer
        EXPECT_EQ(answer, 0xFFFFFFFF);
    EXPECT_EQ(aFloat, 2.0f);
    ASSERT_EQ(writer.closeFile(), 0);
    EXPECT_EQ(outputOf("soxi -s " + quoted(folder / "a.wav")), "0\n");
}

TEST(FileWriter, SaysWhatFailedOnTheErrorStreamAndLosesNothing) {
    std::string lines;
    const LogSink before = setLogSink([&](std::string_view line) { (lines += line) += '\n'; });
    TemporaryFolder folder;
    writeText(folder / "a.wav", "old");
    const std::int16_t sample = 0;
    Writer writer;
    EXPECT_EQ(writer.writeShortsMok_fromArray(1, &sample), static_cast<std::uint32_t>(-38));
    EXPECT_EQ(writer.closeFile(), -38);
    EXPECT_EQ(writer.open(folder / "a.wav", "WAVE", 2, 7), static_cast<OSStatus>(fourCC("fmt?")));
    EXPECT_EQ(writer.open(folder / "a.wav", "MPG3", 2), static_cast<OSStatus>(fourCC("typ?")));
    EXPECT_EQ(writer.open(folder / "none/a.wav", "WAVE", 2), -43);
    EXPECT_EQ(lines, "ExtAudioFileWrite FAILED! -38 '\?\?\?\?'\n"
                     "AudioFileCreate FAILED! 1718449215 'fmt?'\n"
                     "AudioFileCreate FAILED! 1954115647 'typ?'\n"
                     "AudioFileCreate FAILED! -43 '\?\?\?\?'\n");
    {
        Writer destroyed;
        ASSERT_EQ(destroyed.open(folder / "a.wav", "WAVE", 1), 0);
        ASSERT_EQ(destroyed.writeShortsMok_fromArray(1, &sample), 0u);
        EXPECT_EQ(readText(folder / "a.wav"), "old");
    }
    EXPECT_EQ(readText(folder / "a.wav"), "old");
    EXPECT_EQ(folder.entries(), 1);
    setLogSink(before);
}

/// Two tones, one a channel, of 1.3 s less a bit: no multiple of any packet.
constexpr std::uint32_t kToneFrames = 57001;
constexpr double kToneLevel = 0.6;
constexpr double kToneHz[2] = {220.0, 440.0};

double toneAt(std::size_t channel, std::size_t i) {
    return kToneLevel *
           std::sin(2 * std::numbers::pi * kToneHz[channel] * static_cast<double>(i) / 44100);
}

/// Writes both tones with a float array a channel in blocks of 1000.
void writeTones(const std::filesystem::path& path, const char (&type)[5]) {
    Writer writer;
    ASSERT_EQ(writer.open(path, type, 2), 0);
    for (std::uint32_t done = 0; done < kToneFrames;) {
        const std::uint32_t part = std::min(1000u, kToneFrames - done);
        std::vector<float> left(part), right(part);
        for (std::uint32_t i = 0; i < part; ++i, ++done) {
            left[i] = static_cast<float>(toneAt(0, done));
            right[i] = static_cast<float>(toneAt(1, done));
        }
        float* array[] = {left.data(), right.data()};
        ASSERT_EQ(writer.writeFloats_fromArray(part, array), 0u);
    }
    ASSERT_EQ(writer.closeFile(), 0);
}

/// Signal power over error power, in decibels, of one channel's first kToneFrames.
double signalToNoise(const std::vector<std::int32_t>& stereo, std::size_t channel) {
    double signal = 0, noise = 0;
    for (std::size_t i = 0; i < kToneFrames; ++i) {
        const double wanted = toneAt(channel, i);
        signal += wanted * wanted;
        noise += std::pow(stereo[2 * i + channel] / 2147483648.0 - wanted, 2);
    }
    return 10 * std::log10(signal / noise);
}

TEST(FileWriter, WritesAifcWhoseNoiseIs40DecibelsDown) {
    TemporaryFolder folder;
    writeTones(folder / "a.aifc", "AIFC");
    const auto got = decodedByOtherProgram(folder / "a.aifc");
    ASSERT_EQ(got.size(), 2u * 57024) << "whole packets of 64 frames";
    EXPECT_EQ(outputOf("ffprobe -v error -show_entries stream=duration_ts -of csv=p=0 " +
                       quoted(folder / "a.aifc")),
              "57024\n");
    EXPECT_GT(signalToNoise(got, 0), 40);
    EXPECT_GT(signalToNoise(got, 1), 40);
}

TEST(FileWriter, WritesM4aOfTheSameRateLengthAndSpectrum) {
    TemporaryFolder folder;
    writeTones(folder / "a.m4a", "m4af");
    EXPECT_EQ(outputOf("ffprobe -v error -show_entries "
                       "stream=codec_name,profile,sample_rate,channels -of csv=p=0 " +
                       quoted(folder / "a.m4a")),
              "aac,LC,44100,2\n");
    const auto got = decodedByOtherProgram(folder / "a.m4a");
    EXPECT_NEAR(static_cast<double>(got.size()) / 2, kToneFrames, 1024);
    ASSERT_GE(got.size(), 2u * 44100);
    for (std::size_t channel : {0, 1}) {
        // Over exactly one second every tone is a whole number of turns.
        double power = 0, cosine = 0, sine = 0;
        for (std::size_t i = 4410; i < 4410 + 44100; ++i) {
            const double x = got[2 * i + channel] / 2147483648.0;
            const double turn = 2 * std::numbers::pi * kToneHz[channel] * static_cast<double>(i);
            power += x * x / 44100;
            cosine += x * std::cos(turn / 44100) / 22050;
            sine += x * std::sin(turn / 44100) / 22050;
        }
        const double level = std::hypot(cosine, sine);
        EXPECT_NEAR(20 * std::log10(level / kToneLevel), 0, 0.5);
        EXPECT_LT(10 * std::log10((power - level * level / 2) / power), -40) << "all but the tone";
    }
}

} // namespace
} // namespace zephyra
