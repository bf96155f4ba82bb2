// Reading sound files: what options do, and what is no sound file at all.

#include "platform/sound/sound_file.h"

#include "tests/support/testing.h"

#include <sys/stat.h>

namespace zephyra {
namespace {

const fs::path kMono = fs::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file/mono.wav";

TEST(SoundFile, rawFilesAre16BitMonoAt44100UnlessToldOtherwiseWithinReason) {
    // The first two bytes look like the start of an MP3 frame: only the extension decides.
    TemporaryFolder folder;
    const auto path = folder / "noise.RAW";
    writeText(path, std::string("\xff\xfb\x00\x40\x00\x80\x07", 7));
    const auto plain = must(readSoundFile(path));
    EXPECT_THAT(plain.samples, ElementsAre(-1025 / 32768.0f, 0.5f, -1.0f));
    EXPECT_EQ(plain.info.sampleRate, 44100.0);

    const auto told = must(readSoundFile(path, {.raw = {8000.0, 2, 8}}));
    EXPECT_THAT(told.samples, ElementsAre(-3 / 128.0f, 0.25f, -0.5f));
    EXPECT_EQ(told.info.sampleRate, 8000.0);

    const std::pair<RawSoundFormat, const char*> refused[] = {
        {{0.0, 1, 16}, "rate of 0 Hz; 100 to 768000"},
        {{std::nan(""), 1, 16}, "rate of nan Hz"},
        {{44100.0, 0, 16}, "0 channels; 1 to 1024"},
        {{44100.0, 1, 12}, "12 bits a sample; 8, 16, 24 or 32"}};
    for (const auto& [raw, reason] : refused)
        EXPECT_THAT(readSoundFile(path, {raw}).message(), HasSubstr(reason));
}

TEST(SoundFile, contentDecidesWhateverTheNameTagsAndLengthWithinTheLimit) {
    TemporaryFolder folder;
    fs::copy_file(kMono, folder / "misnamed.mp3");
    const auto info = must(readSoundFileInfo(folder / "misnamed.mp3"));
    EXPECT_EQ(std::tuple(info.format, info.frames), std::tuple("WAV, Signed 16 bit PCM", 400u));
    EXPECT_TRUE(readSoundFile(kMono, {.maxFrames = 400}).ok());
    EXPECT_THAT(readSoundFile(kMono, {.maxFrames = 399}).message(),
                HasSubstr("is longer than 399 frames;"));

    const std::string tag("ID3\4\0\0\0\0\0\5.....", 15);
    const auto plain = readSoundFile(kMono);
    writeText(folder / "tagged", tag + tag + readText(kMono));
    EXPECT_EQ(must(readSoundFile(folder / "tagged")).samples, plain.value().samples);

    // Grown beyond what is loaded, by what no sound file minds.
    fs::copy_file(kMono, folder / "large");
    fs::resize_file(folder / "large", FileBytes::kMostInMemory + 1);
    auto large = openSoundFile(folder / "large");
    EXPECT_EQ(readSoundFile(large.value()).value().samples, plain.value().samples);
    EXPECT_FALSE(large.value().isLoaded());
}

TEST(SoundFile, whatIsNoRegularFileIsRefusedWithoutWaiting) {
    TemporaryFolder folder;
    mkfifo((folder / "pipe.wav").c_str(), 0600);
    const std::pair<fs::path, const char*> cases[] = {
        {folder / "pipe.wav", "is no regular file;"},
        {"/dev/zero", "is no regular file;"},
        {folder.path(), "is a folder;"},
        {folder / "no\nne.wav", "no\\x0Ane.wav does not exist"}};
    for (const auto& [path, reason] : cases)
        EXPECT_THAT(readSoundFile(path).message(), HasSubstr(reason));
}

TEST(SoundFile, progressRisesToOneAndCanCancel) {
    TemporaryFolder folder;
    const auto path = folder / "long.raw";
    writeText(path, std::string(1'000'000, '\0'));
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
