#include "platform/sound/file_facts.h"

#include "platform/files/content_hash.h"
#include "platform/files/file_calls.h"
#include "tests/support/counted_reads.h"
#include "tests/support/temporary_folder.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

namespace zephyra {
namespace {

namespace fs = std::filesystem;

const fs::path kMono =
    std::filesystem::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file/mono.wav";

std::string hashOf(const std::string& text) {
    return contentHash(std::as_bytes(std::span(text)));
}

TEST(FileFacts, AreReadOnceForEveryVersionOfAFile) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.raw";
    FileFacts facts;
    const CountedReads reads;
    auto expectReads = [&, total = 0](const std::string& text, int more) mutable {
        EXPECT_EQ(facts.contentHash(path).value().hash, hashOf(text));
        EXPECT_EQ(reads.opens(path), total += more) << text;
        EXPECT_EQ(reads.reads(path), total) << text;
    };
    writeText(path, "first");
    ageFile(path);
    expectReads("first", 1);
    expectReads("first", 0);
    const auto before = fs::last_write_time(path);
    std::ofstream(path, std::ios::in | std::ios::binary) << "other"; // in place, as long
    fs::last_write_time(path, before);                               // and as old
    EXPECT_EQ(facts.knownHash(path), std::nullopt);
    expectReads("other", 1);
    expectReads("other", 0);
    EXPECT_EQ(facts.knownHash(path), hashOf("other"));
    fs::rename(path, folder / "b.raw");
    EXPECT_FALSE(facts.contentHash(path).ok());
    EXPECT_EQ(facts.knownHash(path), std::nullopt);
}

TEST(FileFacts, AreNotKeptOfAFileThatWasJustWritten) {
    const TemporaryFolder folder;
    const fs::path path = folder / "a.raw";
    FileFacts facts;
    const CountedReads reads;
    const auto written = [&](std::chrono::milliseconds ago) {
        fs::last_write_time(path, fs::file_time_type::clock::now() - ago);
        const int before = reads.opens(path);
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(facts.contentHash(path).value().hash, hashOf(readText(path)));
        return reads.opens(path) - before;
    };
    writeText(path, "sound");
    EXPECT_EQ(written(std::chrono::milliseconds(0)), 2);
    EXPECT_EQ(written(std::chrono::milliseconds(-5000)), 2) << "a clock that is behind";
    EXPECT_EQ(written(std::chrono::milliseconds(3000)), 1);
}

TEST(FileFacts, TellOfASoundWhatItsHeaderSaysAndNothingOfWhatIsNone) {
    const TemporaryFolder folder;
    fs::copy_file(kMono, folder / "a.wav");
    writeText(folder / "none.wav", "no sound at all");
    for (const char* name : {"a.wav", "none.wav"}) ageFile(folder / name);
    FileFacts facts;
    const CountedReads reads;
    for (int i = 0; i < 2; ++i) {
        const auto info = facts.soundInfo(folder / "a.wav");
        ASSERT_TRUE(info.ok()) << info.message();
        EXPECT_EQ(info.value().frames, 400u);
        EXPECT_EQ(facts.soundInfo(folder / "none.wav").message(),
                  readSoundFileInfo(folder / "none.wav").message());
    }
    EXPECT_EQ(reads.opens(folder / "a.wav"), 1);
    EXPECT_TRUE(facts.contentHash(folder / "none.wav").ok());
    EXPECT_EQ(facts.soundInfo(folder / "none").message(),
              readSoundFileInfo(folder / "none").message());
}

TEST(FileFacts, CancelledReadingLeavesTheNextOneToReadTheFile) {
    const TemporaryFolder folder;
    writeText(folder / "a.raw", "sound");
    ageFile(folder / "a.raw");
    FileFacts facts;
    EXPECT_FALSE(facts.contentHash(folder / "a.raw", [] { return false; }).ok());
    EXPECT_EQ(facts.contentHash(folder / "a.raw").value().hash, hashOf("sound"));
}

TEST(FileFacts, SharedByThreadsReadEachFileOnce) {
    const TemporaryFolder folder;
    std::vector<fs::path> files;
    for (int i = 0; i < 50; ++i) {
        files.push_back(folder / (std::to_string(i) + ".raw"));
        writeText(files.back(), std::to_string(i) + std::string(100'000, 'x'));
        ageFile(files.back());
    }
    FileFacts facts;
    const CountedReads reads;
    const auto readAll = [&] {
        for (const fs::path& file : files)
            EXPECT_EQ(facts.contentHash(file).value().hash.size(), 32u);
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(readAll);
    for (std::thread& thread : threads) thread.join();
    for (const fs::path& file : files) EXPECT_EQ(reads.opens(file), 1) << file;
}

} // namespace
} // namespace zephyra
