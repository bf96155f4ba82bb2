#include "stream/audio_file_writer.h"

#include "platform/text/log.h"
#include "tests/support/other_program.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

Log& standardError() {
    static Log log;
    return log;
}

class Writer : public EAFWrite {
public:
    explicit Writer(Log& log = standardError()) : EAFWrite(log) {}

    OSStatus open(const fs::path& path, FourCharCode type, std::uint32_t channels,
                  std::uint32_t bits = 16) {
        return openFileForWrite_sr_channels_wordLength_type(path, 44100, channels, bits, type);
    }
};

/// What another program reads, as the 16-bit values that were written.
std::vector<int> writtenShorts(const fs::path& file) {
    std::vector<int> shorts;
    for (const std::int32_t sample : decodedByOtherProgram(file)) shorts.push_back(sample / 65536);
    return shorts;
}

TEST(FileWriter, LimitsFloatsWhereTheyCameFromOrKeepsTheLowBitsOfUnlimitedOnes) {
    const std::tuple<float, float, int, int> cases[] = {{1.0f, 0.999f, 32735, 32767},
                                                        {-1.0f, -1.0f, -32768, -32767},
                                                        {-1.2f, -1.0f, -32768, 26216},
                                                        {0.5f, 0.5f, 16384, 16383},
                                                        {1.9f / 32768, 1.9f / 32768, 1, 1},
                                                        {-1.9f / 32768, -1.9f / 32768, -1, -1},
                                                        {1e5f, 0.999f, 32735, -1},
                                                        {-1e5f, -1.0f, -32768, 0},
                                                        {INFINITY, 0.999f, 32735, -1},
                                                        {-INFINITY, -1.0f, -32768, 0},
                                                        {NAN, 0.0f, 0, 0}};
    TemporaryFolder folder;
    Writer writer;
    ASSERT_EQ(writer.open(folder / "a.wav", fourCC("WAVE"), 1), 0);
    std::vector<int> expected;
    for (const auto& [given, kept, limited, lowBits] : cases) {
        float sample = given;
        float* array[] = {&sample};
        const StereoFloatArrays sides = {&given, nullptr};
        EXPECT_EQ(writer.writeFloats_fromArray(1, array), 0u);
        EXPECT_EQ(sample, kept) << given;
        EXPECT_EQ(writer.writeFloatsMok_fromArray(1, &sides), 0u);
        expected.insert(expected.end(), {limited, lowBits});
    }
    ASSERT_EQ(writer.closeFile(), 0);
    EXPECT_EQ(writtenShorts(folder / "a.wav"), expected);
}

TEST(FileWriter, FillsTheChannelsAndMissingOnesWithSilence) {
    const std::int16_t shorts[] = {11, 12};
    float floats[] = {0.25f, -0.25f};
    const std::int16_t* someShorts[] = {nullptr, shorts, nullptr};
    float* someFloats[] = {nullptr, nullptr, floats};
    const StereoFloatArrays right = {nullptr, floats}, both = {floats + 1, floats};
    for (const auto& [type, name] :
         {std::pair(fourCC("AIFF"), "a.aiff"), {fourCC("WAVE"), "a.wav"}}) {
        TemporaryFolder folder;
        Writer writer;
        ASSERT_EQ(writer.open(folder / name, type, 3, 20), 0); // whole bytes: 16 bits
        EXPECT_EQ(writer.mStreamFormat.bytesPerFrame, 6u);
        EXPECT_EQ(writer.writeShorts_fromArray(2, someShorts), 0u);
        EXPECT_EQ(writer.writeFloats_fromArray(2, someFloats), 0u);
        EXPECT_EQ(writer.writeShortsMok_fromArray(2, shorts), 0u);
        EXPECT_EQ(writer.writeFloatsMok_fromArray(1, &right), 0u);
        EXPECT_EQ(writer.writeFloatsMok_fromArray(1, &both), 0u);
        ASSERT_EQ(writer.closeFile(), 0);
        const std::vector<int> expected = {0,  11, 0, 0,  12, 0, 0, 0,    8192, 0,     0,    -8192,
                                           11, 11, 0, 12, 12, 0, 0, 8191, 0,    -8191, 8191, 0};
        EXPECT_EQ(writtenShorts(folder / name), expected) << name;
    }
}

TEST(FileWriter, TellsTheLogWhatFailedAndLosesNothing) {
    std::string lines;
    Log log([&](std::string_view line) { (lines += line) += '\n'; });
    TemporaryFolder folder;
    writeText(folder / "a.wav", "old");
    const std::int16_t sample = 0;
    {
        Writer writer(log);
        EXPECT_EQ(writer.writeShortsMok_fromArray(1, &sample), static_cast<std::uint32_t>(-38));
        EXPECT_EQ(writer.closeFile(), -38);
        EXPECT_EQ(writer.open(folder / "a.wav", fourCC("WAVE"), 2, 7), OSStatus(fourCC("fmt?")));
        EXPECT_EQ(writer.open(folder / "a.wav", fourCC("MPG3"), 2), OSStatus(fourCC("typ?")));
        EXPECT_EQ(writer.open(folder / "none/a.wav", fourCC("WAVE"), 2), -43);
        ASSERT_EQ(writer.open(folder / "a.wav", fourCC("WAVE"), 1), 0);
        ASSERT_EQ(writer.writeShortsMok_fromArray(1, &sample), 0u);
        for (const std::uint32_t frames : {0u, 0x80000000u}) // none, and 4 gigabytes a buffer
            EXPECT_EQ(writer.writeShortsMok_fromArray(frames, &sample), 0xFFFFFFFF);
        EXPECT_EQ(writer.writeFloatsMok_fromArray(1, nullptr), 0xFFFFFFFF);
    }
    EXPECT_EQ(lines, "ExtAudioFileWrite FAILED! -38 '\?\?\?\?'\n"
                     "AudioFileCreate FAILED! 1718449215 'fmt?'\n"
                     "AudioFileCreate FAILED! 1954115647 'typ?'\n"
                     "AudioFileCreate FAILED! -43 '\?\?\?\?'\n");
    EXPECT_EQ(std::tuple(readText(folder / "a.wav"), folder.entries()), std::tuple("old", 1));
}

/// Two tones, one a channel, of 1.3 s less a bit: no multiple of any packet.
constexpr std::uint32_t kToneFrames = 57001;
constexpr double kToneHz[2] = {220.0, 440.0};

double toneAt(std::size_t channel, std::size_t i) {
    return 0.6 * std::sin(2 * std::numbers::pi * kToneHz[channel] * static_cast<double>(i) / 44100);
}

/// Writes both tones with a float array a channel in blocks of 1000.
void writeTones(const fs::path& path, FourCharCode type) {
    std::vector<float> sides[2];
    for (std::size_t side : {0, 1})
        for (std::size_t i = 0; i < kToneFrames; ++i)
            sides[side].push_back(static_cast<float>(toneAt(side, i)));
    Writer writer;
    ASSERT_EQ(writer.open(path, type, 2), 0);
    for (std::uint32_t done = 0; done < kToneFrames; done += 1000) {
        float* array[] = {sides[0].data() + done, sides[1].data() + done};
        ASSERT_EQ(writer.writeFloats_fromArray(std::min(1000u, kToneFrames - done), array), 0u);
    }
    ASSERT_EQ(writer.closeFile(), 0);
}

TEST(FileWriter, WritesCompressedFilesOfTheRightLengthWhoseNoiseIs40DecibelsDown) {
    const std::tuple<FourCharCode, const char*, const char*, std::size_t> cases[] = {
        {fourCC("AIFC"), "a.aifc", "adpcm_ima_qt,unknown,44100,2,57024\n", 57024}, // 64 a packet
        {fourCC("m4af"), "a.m4a", "aac,LC,44100,2,57001\n", 58025}};
    for (const auto& [type, name, facts, longest] : cases) {
        TemporaryFolder folder;
        writeTones(folder / name, type);
        EXPECT_EQ(outputOf("ffprobe -v error -show_entries stream=codec_name,profile,sample_rate,"
                           "channels,duration_ts -of csv=p=0 " +
                           quoted(folder / name)),
                  facts);
        const auto got = decodedByOtherProgram(folder / name);
        ASSERT_GE(got.size(), 2 * kToneFrames);
        EXPECT_LE(got.size(), 2 * longest);
        for (std::size_t i = 2 * (kToneFrames + 4); i < got.size(); ++i) // as fast as it can
            EXPECT_LT(std::abs(got[i] / 2147483648.0), 0.05) << "sound behind the end";
        for (std::size_t channel : {0, 1}) {
            double signal = 0, noise = 0;
            for (std::size_t i = 0; i < kToneFrames; ++i) {
                const double wanted = toneAt(channel, i);
                signal += wanted * wanted;
                noise += std::pow(got[2 * i + channel] / 2147483648.0 - wanted, 2);
            }
            EXPECT_GT(10 * std::log10(signal / noise), 40) << name << ", channel " << channel;
        }
    }
}

} // namespace
} // namespace zephyra
