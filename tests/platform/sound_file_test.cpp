// Reading sound files: what options do, and what is no sound file at all.

#include "platform/sound_file.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zephyra {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::filesystem::path kMono =
    std::filesystem::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file/mono.wav";

class SoundFileTest : public testing::Test {
protected:
    SoundFileTest() {
        folder_ = testing::TempDir() + "sound_file_test_" + std::to_string(getpid());
        std::filesystem::create_directory(folder_);
    }
    ~SoundFileTest() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path written(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return folder_ / name;
    }

    std::filesystem::path folder_;
};

TEST_F(SoundFileTest, rawFilesAre16BitMonoAt44100UnlessToldOtherwise) {
    // The first two bytes look like the start of an MP3 frame: only the extension decides.
    const auto path = written("noise.RAW", std::string("\xff\xfb\x00\x40\x00\x80\x07", 7));
    const auto plain = readSoundFile(path);
    ASSERT_TRUE(plain.ok()) << plain.message();
    EXPECT_THAT(plain.value().samples, ElementsAre(-1025 / 32768.0f, 0.5f, -1.0f));
    EXPECT_EQ(plain.value().info.sampleRate, 44100.0);

    const auto told = readSoundFile(path, {.raw = {8000.0, 2, 8}});
    ASSERT_TRUE(told.ok()) << told.message();
    EXPECT_THAT(told.value().samples, ElementsAre(-3 / 128.0f, 0.25f, -0.5f));
    EXPECT_EQ(told.value().info.sampleRate, 8000.0);
}

TEST_F(SoundFileTest, absurdRawOptionsAreRefused) {
    const auto path = written("noise.raw", "12345678");
    const auto refusal = [&](RawSoundFormat raw) { return readSoundFile(path, {raw}).message(); };
    EXPECT_THAT(refusal({0.0, 1, 16}), HasSubstr("rate of 0 Hz; 100 to 768000"));
    EXPECT_THAT(refusal({std::nan(""), 1, 16}), HasSubstr("rate of nan Hz"));
    EXPECT_THAT(refusal({44100.0, 0, 16}), HasSubstr("0 channels; 1 to 1024"));
    EXPECT_THAT(refusal({44100.0, 1, 12}), HasSubstr("12 bits a sample; 8, 16, 24 or 32"));
}

TEST_F(SoundFileTest, contentDecidesWhateverTheName) {
    std::filesystem::copy_file(kMono, folder_ / "misnamed.mp3");
    const auto info = readSoundFileInfo(folder_ / "misnamed.mp3");
    ASSERT_TRUE(info.ok()) << info.message();
    EXPECT_EQ(info.value().format, "WAV, Signed 16 bit PCM");
    EXPECT_EQ(info.value().frames, 400u);
}

TEST_F(SoundFileTest, whatIsNoRegularFileIsRefusedWithoutWaiting) {
    mkfifo((folder_ / "pipe.wav").c_str(), 0600);
    EXPECT_THAT(readSoundFile(folder_ / "pipe.wav").message(), HasSubstr("is no regular file;"));
    EXPECT_THAT(readSoundFile("/dev/zero").message(), HasSubstr("is no regular file;"));
    EXPECT_THAT(readSoundFile(folder_).message(), HasSubstr("is a folder;"));
    EXPECT_THAT(readSoundFile(folder_ / "no\nne.wav").message(),
                HasSubstr("no?ne.wav cannot be opened: No such file"));
}

TEST_F(SoundFileTest, aFileLongerThanTheLimitIsRefused) {
    EXPECT_TRUE(readSoundFile(kMono, {.maxFrames = 400}).ok());
    EXPECT_THAT(readSoundFile(kMono, {.maxFrames = 399}).message(),
                HasSubstr("is longer than 399 frames;"));
}

TEST_F(SoundFileTest, progressRisesToOneAndCanCancel) {
    const auto path = written("long.raw", std::string(1'000'000, '\0'));
    std::vector<double> shares;
    SoundFileOptions options;
    options.progress = [&](double share) { return shares.push_back(share), true; };
    ASSERT_TRUE(readSoundFile(path, options).ok());
    EXPECT_GT(shares.size(), 5u);
    EXPECT_LT(shares.front(), 0.2);
    EXPECT_TRUE(std::is_sorted(shares.begin(), shares.end()));
    EXPECT_EQ(shares.back(), 1.0);

    int calls = 0;
    options.progress = [&](double) { return ++calls < 2; };
    EXPECT_THAT(readSoundFile(path, options).message(), HasSubstr("cancelled"));
    EXPECT_EQ(calls, 2);
}

} // namespace
} // namespace zephyra
