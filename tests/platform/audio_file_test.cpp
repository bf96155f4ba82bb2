#include "platform/sound/audio_file.h"

#include "platform/sound/audio_file_error.h"
#include "platform/sound/float_file_writer.h"
#include "tests/support/failing_calls.h"
#include "tests/support/other_program.h"

#include <sys/syscall.h>
#include <unistd.h>

/// Takes the place of the system's, so that what a library writes by itself can fail, too.
extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t count) {
    zephyra::FileCallGate gate = zephyra::setFileCallGate({});
    const int refused = gate ? gate(zephyra::FileCall::write, "a library's") : 0;
    zephyra::setFileCallGate(std::move(gate));
    if (refused == 0) return ::syscall(SYS_write, descriptor, bytes, count);
    errno = refused;
    return -1;
}

namespace zephyra {
namespace {

namespace type = audio_file_type;

constexpr std::pair<FourCharCode, const char*> kTypes[] = {
    {type::aifc, "a.aifc"}, {type::aiff, "a.aiff"}, {type::next, "a.au"}, {type::caff, "a.caf"},
    {type::sd2f, "a.sd2"},  {type::wave, "a.wav"},  {type::m4af, "a.m4a"}};

StreamDescription fileFormat(FourCharCode fileType, std::uint32_t channels, std::uint32_t bits) {
    if (fileType == type::aifc) return {44100, fourCC("ima4"), 0, 0, 1, 0, channels, 0};
    if (fileType == type::m4af) return {44100, fourCC("aac "), 2, 0, 1024, 0, channels, 0};
    const std::uint32_t flags = fileType == type::wave ? 12 : 14;
    const std::uint32_t bytes = bits / 8 * channels;
    return {44100, fourCC("lpcm"), flags, bytes, 1, bytes, channels, bits};
}

StreamDescription clientFormat(std::uint32_t channels) {
    return {44100, fourCC("lpcm"), 36, 2, 1, 2, channels, 16};
}

/// Channel c, frame i of the test signal: all 16 bits move, both ends of the range occur.
std::int16_t sampleAt(std::uint32_t c, std::uint32_t i) {
    return static_cast<std::int16_t>(i < 2 ? (i ? 32767 : -32768) : i * 7919 + c * 12345);
}

/// Writes frames of the signal in blocks of growing length; the first failure.
OSStatus writeSignal(const fs::path& path, FourCharCode fileType, const StreamDescription& format,
                     std::uint32_t frames) {
    AudioFileID file;
    ExtAudioFileRef samples;
    const std::uint32_t channels = format.channelsPerFrame;
    OSStatus status = AudioFileCreate(path, fileType, format, file);
    if (status == 0) status = ExtAudioFileWrapAudioFileID(file, samples);
    if (status == 0) status = ExtAudioFileSetProperty(samples, clientFormat(channels));
    for (std::uint32_t done = 0, block = 1; status == 0 && done < frames; block = block * 3 + 1) {
        const std::uint32_t part = std::min(block, frames - done);
        AudioBufferList* list = AllocateAudioBufferList(channels, part * 2);
        for (std::uint32_t c = 0; c < channels; ++c)
            for (std::uint32_t i = 0; i < part; ++i)
                static_cast<std::int16_t*>(list->mBuffers[c].mData)[i] = sampleAt(c, done + i);
        status = ExtAudioFileWrite(samples, part, *list);
        DestroyAudioBufferList(list);
        done += part;
    }
    return status == 0 ? AudioFileClose(std::move(file)) : status;
}

TEST(AudioFile, GivesOtherProgramsEveryLinearSampleExactly) {
    constexpr std::uint32_t kFrames = 20001; // odd, and several internal blocks
    const std::pair<std::uint32_t, std::uint32_t> layouts[] = {{8, 1},  {8, 2},  {16, 1}, {16, 2},
                                                               {24, 1}, {24, 2}, {32, 5}};
    for (const auto& [fileType, name] : kTypes)
        for (const auto& [bits, channels] : layouts) {
            if (fileType == type::aifc || fileType == type::m4af) continue;
            SCOPED_TRACE(testing::Message() << name << ' ' << bits << " bits x " << channels);
            TemporaryFolder folder;
            const auto format = fileFormat(fileType, channels, bits);
            ASSERT_EQ(writeSignal(folder / name, fileType, format, kFrames), 0);
            const auto got = decodedByOtherProgram(folder / name);
            ASSERT_EQ(got.size(), std::size_t{kFrames} * channels);
            for (std::uint32_t i = 0; i < got.size(); ++i) {
                const std::int32_t kept = bits == 8 ? ~255 : ~0;
                const std::int32_t want = (sampleAt(i % channels, i / channels) & kept) * 65536;
                ASSERT_EQ(got[i], want) << "sample " << i;
            }
        }
}

TEST(AudioFile, IsCompleteOrAbsentWhateverFails) {
    for (const auto& [fileType, name] : kTypes)
        for (const auto& [bits, frames] : {std::pair(8u, 151u), {16u, 151u}}) {
            SCOPED_TRACE(testing::Message() << name << ' ' << bits << ' ' << frames);
            OSStatus status = 0;
            const auto write = [&, fileType = fileType, bits = bits,
                                frames = frames](const fs::path& path) {
                status = writeSignal(path, fileType, fileFormat(fileType, 1, bits), frames);
                return status == 0;
            };
            expectWholeOrNotAtAll(write, "old", fileType == type::sd2f ? 2 : 1);
            attemptToWrite(write, {}, 8, ENOSPC, true);
            EXPECT_EQ(status, audio_file_error::diskFull);
        }
}

TEST(AudioFile, RefusesWhatATypeCannotHold) {
    const auto linear = [](double rate, std::uint32_t flags, std::uint32_t channels,
                           std::uint32_t bits) {
        return StreamDescription{rate, fourCC("lpcm"), flags, 0, 1, 0, channels, bits};
    };
    const std::pair<FourCharCode, StreamDescription> cases[] = {
        {type::aiff, linear(44100, 14, 2, 0)},
        {type::aiff, linear(44100, 14, 2, 40)},
        {type::aiff, linear(44100, 14, 0, 16)},
        {type::aiff, linear(std::nan(""), 14, 2, 16)},
        {type::aiff, linear(1e300, 14, 2, 16)},
        {type::wave, linear(44100, 14, 2, 16)},
        {type::caff, linear(44100, 12, 2, 16)},
        {type::wave, linear(44100, 9, 2, 16)},
        {type::aifc, fileFormat(type::aifc, 3, 0)},
        {type::wave, fileFormat(type::aifc, 2, 0)},
        {type::m4af, fileFormat(type::m4af, 9, 0)},
        {type::m4af, {12345, fourCC("aac "), 2, 0, 1024, 0, 2, 0}}};
    TemporaryFolder folder;
    writeText(folder / "a", "old");
    AudioFileID file;
    EXPECT_EQ(AudioFileCreate(folder / "a", 0, cases[5].second, file), fourCC("typ?"));
    for (const auto& [fileType, format] : cases) {
        EXPECT_EQ(AudioFileCreate(folder / "a", fileType, format, file), fourCC("fmt?"))
            << fourCharText(fileType) << ", " << format.bitsPerChannel << " bits";
        EXPECT_FALSE(file);
    }
    EXPECT_EQ(std::tuple(readText(folder / "a"), folder.entries()), std::tuple("old", 1));
}

TEST(AudioFile, RefusesSamplesThatDoNotFitWhatWasAgreed) {
    TemporaryFolder folder;
    std::int16_t frame = 0;
    AudioBuffer buffers[2] = {{1, 2, &frame}, {1, 2, &frame}};
    AudioFileID file;
    ExtAudioFileRef samples;
    EXPECT_EQ(ExtAudioFileWrapAudioFileID(file, samples), audio_file_error::notOpen);
    EXPECT_EQ(ExtAudioFileWrite(samples, 1, {2, buffers}), audio_file_error::notOpen);
    ASSERT_EQ(AudioFileCreate(folder / "a", type::wave, fileFormat(type::wave, 2, 32), file), 0);
    ASSERT_EQ(ExtAudioFileWrapAudioFileID(file, samples), 0);
    EXPECT_EQ(ExtAudioFileWrite(samples, 1, {2, buffers}), audio_file_error::invalidOperationOrder);
    EXPECT_EQ(ExtAudioFileSetProperty(samples, clientFormat(1)), fourCC("fmt?"));
    ASSERT_EQ(ExtAudioFileSetProperty(samples, clientFormat(2)), 0);
    EXPECT_EQ(ExtAudioFileWrite(samples, 1, {1, buffers}), audio_file_error::badParameter);
    EXPECT_EQ(ExtAudioFileWrite(samples, 2, {2, buffers}), audio_file_error::badParameter);
    EXPECT_EQ(ExtAudioFileWrite(samples, 1, {2, buffers}), 0);

    buffers[0].mDataByteSize = buffers[1].mDataByteSize = 0xFFFFFFFF; // refused before it is read
    EXPECT_EQ(ExtAudioFileWrite(samples, 0x20000000, {2, buffers}), fourCC("off?"));
    EXPECT_EQ(AudioFileClose(std::move(file)), fourCC("off?")) << "an incomplete file is abandoned";
    EXPECT_EQ(folder.entries(), 0);
}

TEST(FloatFileWriter, KeepsEveryFiniteFloat) {
    constexpr std::uint32_t kFrames = 5000;
    std::vector<float> samples(kFrames);
    for (std::uint32_t i = 0; i < kFrames; ++i) samples[i] = 3.0f * std::sin(static_cast<float>(i));
    samples[7] = NAN;
    samples[4999] = INFINITY;
    const float* channels[] = {samples.data(), samples.data() + 1};
    TemporaryFolder folder;
    FloatFileWriter writer;
    ASSERT_TRUE(writer.open(folder / "a.wav", 48000, 2).ok());
    ASSERT_TRUE(writer.write(channels, kFrames - 1).ok());
    ASSERT_TRUE(writer.close().ok());
    EXPECT_EQ(outputOf("soxi -V1 -r " + quoted(folder / "a.wav")), "48000\n");
    EXPECT_EQ(readText(folder / "a.wav").find("PEAK"), std::string::npos) << "holds the time";
    const std::string raw =
        outputOf("ffmpeg -v error -i " + quoted(folder / "a.wav") + " -f f32le -");
    std::vector<float> got(raw.size() / sizeof(float));
    std::memcpy(got.data(), raw.data(), raw.size());
    ASSERT_EQ(got.size(), 2 * (kFrames - 1));
    samples[7] = samples[4999] = 0.0f;
    for (std::uint32_t i = 0; i < got.size(); ++i)
        ASSERT_EQ(got[i], samples[i / 2 + i % 2]) << "sample " << i;
}

using Coding = FloatFileWriter::Coding;

/// Two channels of 20000 frames, some of them beyond full scale.
std::vector<float> loudTone() {
    std::vector<float> samples(20001);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = 1.2f * std::sin(static_cast<float>(i) * 0.05f);
    samples[3] = NAN;
    return samples;
}

bool writeFloats(const fs::path& path, Coding coding, double rate = 48000) {
    const std::vector<float> samples = loudTone();
    const float* channels[] = {samples.data(), samples.data() + 1};
    FloatFileWriter writer;
    return writer.open(path, rate, 2, coding) && writer.write(channels, 20000) && writer.close();
}

TEST(FloatFileWriter, LimitsWhatIsCodedAndGivesTheSameBytesAgain) {
    const std::vector<float> samples = loudTone();
    const TemporaryFolder folder;
    for (const auto& [coding, name, error] :
         {std::tuple(Coding::flac, "a.flac", 1.0 / 32768), {Coding::vorbis, "a.ogg", 0.1}}) {
        ASSERT_TRUE(writeFloats(folder / name, coding));
        const std::string bytes = readText(folder / name);
        EXPECT_EQ(outputOf("soxi -V1 -r " + quoted(folder / name)), "48000\n");
        const auto got = decodedByOtherProgram(folder / name);
        ASSERT_EQ(got.size(), 40000u) << name;
        for (std::uint32_t i = 100; i < 39000; ++i)
            ASSERT_NEAR(got[i] / 2147483648.0,
                        std::clamp(double{samples[i / 2 + i % 2]}, -1.0, 0.999), error)
                << name << ", sample " << i;
        ::sleep(1); // a clock has something new to say
        ASSERT_TRUE(writeFloats(folder / name, coding));
        EXPECT_TRUE(readText(folder / name) == bytes) << name;
    }
}

TEST(FloatFileWriter, IsCompleteOrAbsentWhateverFailsAndRefusesRatesThatATypeCannotHold) {
    const std::tuple<Coding, double, double> rates[] = {{Coding::flac, 655350, 65537},
                                                        {Coding::vorbis, 200000, 200001},
                                                        {Coding::vorbis, 8000, 7999}};
    for (const Coding coding : {Coding::wav, Coding::flac, Coding::vorbis})
        expectWholeOrNotAtAll([coding](const fs::path& path) { return writeFloats(path, coding); },
                              "old");
    const TemporaryFolder folder;
    for (const auto& [coding, right, wrong] : rates) {
        EXPECT_TRUE(writeFloats(folder / "a", coding, right));
        EXPECT_FALSE(writeFloats(folder / "b", coding, wrong)) << wrong;
    }
    EXPECT_EQ(folder.entries(), 1);
}

} // namespace
} // namespace zephyra
