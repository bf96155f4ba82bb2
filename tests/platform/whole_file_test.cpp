#include "platform/files/whole_file.h"

#include "platform/files/backup_flag.h"
#include "platform/files/content_hash.h"
#include "platform/files/file_copy.h"
#include "tests/support/failing_calls.h"

#include <sys/xattr.h>

namespace zephyra {
namespace {

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text));
}

TEST(WholeFile, IsCreatedOnlyWhereNothingStands) {
    TemporaryFolder folder;
    fs::create_symlink("nowhere", folder / "link");
    fs::create_directory(folder / "folder");
    const std::pair<const char*, bool> cases[] = {
        {"new", true}, {"new", false}, {"link", false}, {"folder", false}};
    for (const auto& [name, expected] : cases) {
        EXPECT_EQ(must(createFile(folder / name, bytesOf("abc"))), expected) << name;
    }
    EXPECT_FALSE(createFile(folder / "missing/a", bytesOf("abc")).ok());
    EXPECT_FALSE(fs::exists(folder / "link"));
    EXPECT_TRUE(readWholeFile(folder / "new", 3).ok());
    EXPECT_FALSE(readWholeFile(folder / "new", 2).ok());
    std::error_code error;
    auto names = file_calls::list(folder.path(), error);
    std::ranges::sort(names);
    EXPECT_TRUE(!error && names == (std::vector<std::string>{"folder", "link", "new"}));
    EXPECT_TRUE(file_calls::list(folder / "missing", error).empty());
    EXPECT_EQ(error, std::errc::no_such_file_or_directory);
}

TEST(WholeFile, IsTheOldOrTheNewOneWithNothingBesideWhateverCallFails) {
    const auto replace = [](const fs::path& path) {
        return replaceFile(path, bytesOf("new")).ok();
    };
    const auto create = [](const fs::path& path) {
        const auto created = createFile(path, bytesOf("new"));
        return created && created.value();
    };
    const TemporaryFolder elsewhere(quickFolder());
    writeText(elsewhere / "source", "new");
    const auto copyBy = [&elsewhere](auto name) {
        return [&elsewhere, name](const fs::path& path) {
            FileCopy copy;
            if (!copy.open(elsewhere / "source") || !copy.write(path)) return false;
            const auto named = (copy.*name)();
            return named && named.value();
        };
    };
    for (const WriteFile& write : {WriteFile(replace), WriteFile(copyBy(&FileCopy::replace))}) {
        expectWholeOrNotAtAll(write, "old, and longer");
        expectWholeOrNotAtAll(write, {});
    }
    expectWholeOrNotAtAll(create, {});
    expectWholeOrNotAtAll(copyBy(&FileCopy::create), {});
}

TEST(WholeFile, ClearsAwayWhatADeadProcessLeftADayAgo) {
    TemporaryFolder folder;
    const auto now = fs::file_time_type::clock::now();
    const std::tuple<const char*, int, int, bool> cases[] = {
        {".zephyra-unfinished-aB3xYz", 25, 25, false},
        {".zephyra-unfinished-aB3xYy", 23, 23, true},
        {".zephyra-unfinished-000000", 25, 1, true}, // a long recording
        {".zephyra-unfinished-aB3xY", 25, 25, true},
        {".zephyra-unfinished-aB3xY-", 25, 25, true},
        {".zephyra-backup", 25, 25, true}};
    for (const auto& [name, folderHours, fileHours, stays] : cases) {
        fs::create_directory(folder / name);
        writeText(folder / name / "half", "a");
        fs::last_write_time(folder / name / "half", now - std::chrono::hours(fileHours));
        fs::last_write_time(folder / name, now - std::chrono::hours(folderHours));
    }
    fs::create_directory_symlink(".zephyra-backup", folder / ".zephyra-unfinished-linked");
    ASSERT_TRUE(replaceFile(folder / "a", {}).ok());
    for (const auto& [name, folderHours, fileHours, stays] : cases)
        EXPECT_EQ(fs::exists(folder / name), stays) << name;
    EXPECT_TRUE(fs::exists(folder / ".zephyra-backup/half")) << "it is somebody's, by a link";
}

TEST(BackupFlag, IsTheAttributeThatBackupProgramsAskFor) {
    TemporaryFolder folder;
    writeText(folder / "a", "");
    const auto mark = [&] {
        char text[16];
        const auto size = ::getxattr((folder / "a").c_str(), "user.xdg.robots.backup", text, 16);
        return size < 0 ? "none" : std::string(text, static_cast<std::size_t>(size));
    };
    if (::setxattr((folder / "a").c_str(), "user.any", "", 0, 0) != 0) GTEST_SKIP() << "no marks";
    for (const auto& [skip, expected] :
         {std::pair(false, "none"), {true, "false"}, {false, "none"}}) {
        EXPECT_TRUE(skipBackupiCloudForItemAtURL_skip(folder / "a", skip));
        EXPECT_EQ(mark(), expected);
    }
}

TEST(ContentHash, IsTheSameOfAFileHoweverManyPiecesItIsReadIn) {
    EXPECT_EQ(contentHash({}), "99aa06d3014798d86001c324468d497f"); // published for no bytes
    TemporaryFolder folder;
    std::string text;
    for (const std::size_t size : {0u, 1u, 262143u, 262144u, 600001u}) {
        while (text.size() < size) text += static_cast<char>(text.size() * 31 >> 3);
        writeText(folder / "a", text);
        auto file = openToHash(folder / "a");
        EXPECT_EQ(contentHash(file.value()).value(), contentHash(bytesOf(text)));
        ASSERT_FALSE(file.value().load());
        EXPECT_EQ(contentHash(file.value()).value(), contentHash(bytesOf(text)));
    }
    EXPECT_EQ(openToHash(folder / "b").message(),
              (folder / "b").string() + " cannot be read: an ordinary file is needed");
}

} // namespace
} // namespace zephyra
