// Every file of fuzz/corpus/sound_file, whose names say what is in them, reads as its row says.

#include "platform/files/folder_entries.h"
#include "platform/sound/sound_file.h"
#include "tests/support/testing.h"

/// The leak of leak-comment-damaged.ogg, see docs/library-faults.md.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libvorbis.so\nleak:libogg.so\n";
}

namespace zephyra {
namespace {

const fs::path kFolder = fs::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file";

constexpr double kPi = 3.14159265358979323846;

/// What is in the files: 400 frames, in the compressed files five times over.
double left(std::size_t frame) {
    return std::round(16000.0 * std::sin(2.0 * kPi * 440.0 * double(frame % 400) / 8000.0)) / 32768;
}
double mean(std::size_t frame) {
    const double t = double(frame % 400) / 8000.0;
    return (left(frame) + std::round(8000.0 * std::sin(2.0 * kPi * 660.0 * t)) / 32768) / 2;
}
double notCompared(std::size_t) {
    return 0.0;
}

using Model = double (*)(std::size_t);

/// Files that read alike: frames, what is in them, the RMS error of a lossy format at most.
const std::tuple<std::size_t, Model, double, std::vector<const char*>> kReadable[] = {
    {400,
     left,
     0,
     {"mono.wav", "mono.aiff", "mono.aifc", "mono.caf", "mono.au", "samples.raw", "float.wav",
      "claims-four-billion-frames.wav", "claims-four-billion-frames.aiff", "claims-too-much.caf",
      "open-ended.caf", "length-zero.wav", "length-zero-of-64-bits.wav", "length-zero.au",
      "length-of-31-bits.au"}},
    {400, mean, 0, {"stereo.wav"}},
    {2000, mean, 0, {"stereo.flac", "lossless.m4a", "claims-too-much.flac"}},
    {2000, mean, 0.02, {"stereo.mp3", "vorbis.ogg"}},
    {2000, mean, 0.05, {"stereo.m4a", "index-first.m4a", "claims-four-billion-frames.m4a"}},
    {2024, notCompared, 0, {"adpcm.wav"}},
    {1, notCompared, 0, {"two-largest-floats.wav"}},
    // What is there is read.
    {200, left, 0, {"cut-in-the-middle.wav", "cut-in-the-middle.aiff", "cut-in-the-middle.caf"}},
    {47, mean, 0.05, {"cut-in-the-middle.mp3"}},
    {1024, mean, 0.05, {"sound-cut.m4a"}},
    {1024, notCompared, 0, {"packets-overwritten.m4a"}},
    {256, notCompared, 0, {"ima4-cut.aifc"}}};

/// Files that are refused for one reason, which the line of failure gives.
const std::pair<const char*, std::vector<const char*>> kRefused[] = {
    {"is empty; a raw, wav", {"empty.wav"}},
    {"is no sound file that is known here; a raw, wav", {"text.wav", "zeros.mp3"}},
    {"holds no sound",
     {"one-byte.raw", "only-a-header.wav", "only-a-header-and-a-note.wav", "cut-in-the-middle.ogg",
      "offset-beyond-the-end.au"}},
    {"infinite or not a number at frame 99;", {"not-a-number.wav"}},
    {"infinite or not a number at frame 7;", {"infinite.wav"}},
    {"infinite or not a number at frame 1;", {"double-beyond-float.wav"}},
    {"has a rate of 1000000 Hz; 100 to 768000 would be right", {"rate-a-million.wav"}},
    {"has a rate of 1 Hz", {"rate-zero.aiff"}},
    {"cannot be read as WAV (its header is damaged); export it", {"rate-zero.wav"}},
    {"its header is damaged", {"rate-too-high.wav", "rate-not-a-number.caf"}},
    {"cannot be read as WAV",
     {"zero-channels.wav", "too-many-channels.wav", "zero-bits.wav", "unknown-coding.wav",
      "chunk-beyond-the-end.wav", "cut-in-the-header.wav"}},
    {"cannot be read as AIFF", {"zero-channels.aiff"}},
    {"cannot be read as CAF", {"zero-channels.caf", "ima4.caf"}},
    {"cannot be read as Ogg", {"leak-comment-damaged.ogg"}},
    {"cannot be read as FLAC", {"cut-in-the-middle.flac"}},
    {"cannot be read as MP3 (its header is damaged)", {"sync-then-noise.mp3"}},
    {"cannot be read as MP3", {"tag-that-never-ends.mp3"}},
    {"is no complete MPEG-4 file", {"index-missing.m4a"}},
    {"holds no AAC or Apple Lossless track", {"no-track.m4a"}},
    {"holds no sound that can be decoded", {"claims-too-many-packets.m4a", "time-scale-zero.m4a"}}};

TEST(SoundFileCorpus, readsWhatIsThereFrameByFrame) {
    for (const auto& [frames, model, rmsError, names] : kReadable)
        for (const std::string name : names) {
            SCOPED_TRACE(name);
            const auto file = must(readSoundFile(kFolder / name));
            ASSERT_EQ(file.samples.size(), frames);
            EXPECT_EQ(file.info.frames, frames);
            EXPECT_EQ(file.info.sampleRate, name == "samples.raw" ? 44100 : 8000);
            double squares = 0.0;
            for (std::size_t i = 0; i < frames; ++i) {
                ASSERT_TRUE(std::isfinite(file.samples[i])) << i;
                squares += std::pow(file.samples[i] - model(i), 2);
            }
            if (model == notCompared) continue;
            EXPECT_LE(std::sqrt(squares / double(frames)), rmsError + 1e-7);
        }
}

TEST(SoundFileCorpus, refusesTheRestWithOneLineThatNamesTheFile) {
    for (const auto& [reason, names] : kRefused)
        for (const char* name : names) {
            EXPECT_THAT(failureOf(readSoundFile(kFolder / name)),
                        AllOf(StartsWith((kFolder / name).string() + " "), HasSubstr(reason),
                              Not(HasSubstr("\n"))));
        }
}

TEST(SoundFileCorpus, hasARowForEveryFile) {
    std::set<std::string> rows;
    for (const auto& [frames, model, error, names] : kReadable)
        rows.insert(names.begin(), names.end());
    for (const auto& [reason, names] : kRefused) rows.insert(names.begin(), names.end());
    EXPECT_THAT(folderEntries(kFolder), ElementsAreArray(rows));
}

} // namespace
} // namespace zephyra
