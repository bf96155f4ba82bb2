// Every file of fuzz/corpus/sound_file, whose names say what is in them, reads as its row says.

#include "platform/sound_file.h"

#include <cmath>
#include <gmock/gmock.h>
#include <set>

/// The leak of leak-comment-damaged.ogg, see docs/library-faults.md.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libvorbis.so\n";
}

namespace zephyra {
namespace {

const std::filesystem::path kFolder =
    std::filesystem::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file";

constexpr double kPi = 3.14159265358979323846;

/// What make_sound_corpus.py puts in: 400 frames, in the compressed files five times over.
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

struct Readable {
    const char* name;
    std::size_t frames;
    double (*model)(std::size_t) = left;
    double rmsError = 0.0; ///< of a lossy format, at most
};

const Readable kReadable[] = {
    {"mono.wav", 400},
    {"mono.aiff", 400},
    {"mono.aifc", 400},
    {"mono.caf", 400},
    {"mono.au", 400},
    {"samples.raw", 400},
    {"float.wav", 400},
    {"stereo.wav", 400, mean},
    {"stereo.flac", 2000, mean},
    {"lossless.m4a", 2000, mean},
    {"adpcm.wav", 2024, notCompared},
    {"stereo.mp3", 2000, mean, 0.02},
    {"vorbis.ogg", 2000, mean, 0.02},
    {"stereo.m4a", 2000, mean, 0.05},
    {"index-first.m4a", 2000, mean, 0.05},
    {"two-largest-floats.wav", 1, notCompared},
    // What is there is read.
    {"cut-in-the-middle.wav", 200},
    {"cut-in-the-middle.aiff", 200},
    {"cut-in-the-middle.mp3", 47, mean, 0.05},
    {"sound-cut.m4a", 1024, mean, 0.05},
    {"packets-overwritten.m4a", 1024, notCompared},
    {"claims-four-billion-frames.wav", 400},
    {"claims-four-billion-frames.aiff", 400},
    {"claims-four-billion-frames.m4a", 2000, mean, 0.05},
    {"claims-too-much.flac", 2000, mean},
    {"ima4-cut.aifc", 256, notCompared},
};

struct Refused {
    const char* name;
    const char* reason; ///< in the line of failure
};

const Refused kRefused[] = {
    {"empty.wav", "is empty; a raw, wav"},
    {"text.wav", "is no sound file that is known here; a raw, wav"},
    {"zeros.mp3", "is no sound file that is known here"},
    {"one-byte.raw", "holds no sound"},
    {"only-a-header.wav", "holds no sound"},
    {"cut-in-the-middle.ogg", "holds no sound"},
    {"offset-beyond-the-end.au", "holds no sound"},
    {"not-a-number.wav", "infinite or not a number at frame 99;"},
    {"infinite.wav", "infinite or not a number at frame 7;"},
    {"double-beyond-float.wav", "infinite or not a number at frame 1;"},
    {"rate-a-million.wav", "has a rate of 1000000 Hz; 100 to 768000 would be right"},
    {"rate-zero.aiff", "has a rate of 1 Hz"},
    {"rate-zero.wav", "cannot be read as WAV (its header is damaged); export it"},
    {"rate-too-high.wav", "its header is damaged"},
    {"rate-not-a-number.caf", "its header is damaged"},
    {"zero-channels.wav", "cannot be read as WAV"},
    {"zero-channels.aiff", "cannot be read as AIFF"},
    {"zero-channels.caf", "cannot be read as CAF"},
    {"too-many-channels.wav", "cannot be read as WAV"},
    {"zero-bits.wav", "cannot be read as WAV"},
    {"unknown-coding.wav", "cannot be read as WAV"},
    {"chunk-beyond-the-end.wav", "cannot be read as WAV"},
    {"cut-in-the-header.wav", "cannot be read as WAV"},
    {"cut-in-the-middle.caf", "cannot be read as CAF"},
    {"open-ended.caf", "cannot be read as CAF"},
    {"claims-too-much.caf", "cannot be read as CAF"},
    {"ima4.caf", "cannot be read as CAF"},
    {"leak-comment-damaged.ogg", "cannot be read as Ogg"},
    {"cut-in-the-middle.flac", "cannot be read as FLAC"},
    {"sync-then-noise.mp3", "cannot be read as MP3 (its header is damaged)"},
    {"tag-that-never-ends.mp3", "cannot be read as MP3"},
    {"index-missing.m4a", "is no complete MPEG-4 file"},
    {"no-track.m4a", "holds no AAC or Apple Lossless track"},
    {"claims-too-many-packets.m4a", "holds no sound that can be decoded"},
    {"time-scale-zero.m4a", "holds no sound that can be decoded"},
};

TEST(SoundFileCorpus, readsWhatIsThereFrameByFrame) {
    for (const Readable& row : kReadable) {
        SCOPED_TRACE(row.name);
        const auto file = readSoundFile(kFolder / row.name);
        ASSERT_TRUE(file.ok()) << file.message();
        const auto& samples = file.value().samples;
        ASSERT_EQ(samples.size(), row.frames);
        EXPECT_EQ(file.value().info.frames, row.frames);
        EXPECT_EQ(file.value().info.sampleRate,
                  row.name == std::string("samples.raw") ? 44100 : 8000);
        double squares = 0.0;
        for (std::size_t i = 0; i < samples.size(); ++i) {
            ASSERT_TRUE(std::isfinite(samples[i])) << i;
            squares += std::pow(samples[i] - row.model(i), 2);
        }
        if (row.model == notCompared) continue;
        EXPECT_LE(std::sqrt(squares / double(samples.size())), row.rmsError + 1e-7);
    }
}

TEST(SoundFileCorpus, refusesTheRestWithOneLineThatNamesTheFile) {
    for (const Refused& row : kRefused) {
        SCOPED_TRACE(row.name);
        const auto file = readSoundFile(kFolder / row.name);
        ASSERT_FALSE(file.ok());
        EXPECT_THAT(file.message(), testing::StartsWith((kFolder / row.name).string() + " "));
        EXPECT_THAT(file.message(), testing::HasSubstr(row.reason));
        EXPECT_THAT(file.message(), testing::Not(testing::HasSubstr("\n")));
    }
}

TEST(SoundFileCorpus, hasARowForEveryFile) {
    std::set<std::string> rows, files;
    for (const Readable& row : kReadable) rows.insert(row.name);
    for (const Refused& row : kRefused) rows.insert(row.name);
    for (const auto& entry : std::filesystem::directory_iterator(kFolder))
        files.insert(entry.path().filename().string());
    EXPECT_EQ(rows, files);
}

} // namespace
} // namespace zephyra
