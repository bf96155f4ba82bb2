#include "platform/sound/file_facts.h"

#include "platform/files/content_hash.h"
#include "tests/support/counted_reads.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct FileFactsTest : testing::Test {
    fs::path agedFile(const std::string& name, const std::string& text) const {
        writeText(folder / name, text);
        ageFile(folder / name);
        return folder / name;
    }
    /// How often the file was opened for its hash, which is right.
    int hashed(const fs::path& path) {
        const std::string text = readText(path);
        const int opened = reads.opens(path), read = reads.reads(path);
        EXPECT_EQ(facts.contentHash(path).value().hash,
                  contentHash(std::as_bytes(std::span(text))));
        EXPECT_EQ(reads.opens(path) - opened, reads.reads(path) - read);
        return reads.opens(path) - opened;
    }

    const TemporaryFolder folder;
    FileFacts facts;
    const CountedReads reads;
};

TEST_F(FileFactsTest, AreReadOnceForEveryVersionOfAFileUnlessItWasJustWritten) {
    const fs::path path = agedFile("a.raw", "first");
    EXPECT_FALSE(facts.contentHash(path, [] { return false; }).ok()) << "cancelled";
    EXPECT_TRUE(hashed(path) == 1 && hashed(path) == 0);
    const auto before = fs::last_write_time(path);
    std::ofstream(path, std::ios::in | std::ios::binary) << "other"; // in place, as long
    fs::last_write_time(path, before);                               // and as old
    EXPECT_EQ(facts.knownHash(path), std::nullopt);
    EXPECT_TRUE(hashed(path) == 1 && hashed(path) == 0);
    EXPECT_EQ(facts.knownHash(path), facts.contentHash(path).value().hash);
    for (const auto& [secondsAgo, times] : {std::pair(0, 2), {-5, 2}, {3, 1}}) {
        fs::last_write_time(path,
                            fs::file_time_type::clock::now() - std::chrono::seconds(secondsAgo));
        EXPECT_EQ(hashed(path) + hashed(path), times) << secondsAgo;
    }
    fs::rename(path, folder / "b.raw");
    EXPECT_FALSE(facts.contentHash(path).ok());
    EXPECT_EQ(facts.knownHash(path), std::nullopt);
}

TEST_F(FileFactsTest, TellOfASoundWhatItsHeaderSaysAndNothingOfWhatIsNone) {
    const fs::path mono = agedFile(
        "a.wav", readText(fs::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/sound_file/mono.wav"));
    const fs::path none = agedFile("none.wav", "no sound at all");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(must(facts.soundInfo(mono)).frames, 400u);
        for (const fs::path& path : {none, folder / "none"})
            EXPECT_EQ(facts.soundInfo(path).message(), readSoundFileInfo(path).message());
    }
    EXPECT_EQ(reads.opens(mono), 1);
    EXPECT_TRUE(facts.contentHash(none).ok());
}

TEST_F(FileFactsTest, SharedByThreadsReadEachFileOnce) {
    std::vector<fs::path> files;
    for (int i = 0; i < 50; ++i)
        files.push_back(agedFile(std::to_string(i), std::string(100'000, static_cast<char>(i))));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (const fs::path& file : files)
                EXPECT_EQ(facts.contentHash(file).value().hash.size(), 32u);
        });
    for (std::thread& thread : threads) thread.join();
    for (const fs::path& file : files) EXPECT_EQ(reads.opens(file), 1) << file;
}

} // namespace
} // namespace zephyra
