#include "platform/files/whole_file.h"

#include "platform/files/atomic_file.h"
#include "platform/files/backup_flag.h"
#include "platform/files/content_hash.h"
#include "platform/files/file_copy.h"
#include "platform/sound/audio_file_error.h"
#include "tests/support/failing_calls.h"
#include "tests/support/testing.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

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

TEST(AtomicFile, KeepsTheOldFileUntilCommitAndTheLinkToItAfter) {
    TemporaryFolder folder;
    writeText(folder / "a.txt", "old");
    fs::create_symlink("a.txt", folder / "link");
    for (const char* name : {"a.txt", "link"}) {
        AtomicFile file;
        ASSERT_FALSE(file.open(folder / name));
        writeText(file.path(), name);
        EXPECT_EQ(file.path().filename(), "a.txt");
        EXPECT_NE(readText(folder / "a.txt"), name);
        ASSERT_FALSE(file.commit());
        EXPECT_EQ(readText(folder / "a.txt"), name);
    }
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(folder.entries(), 2);
}

TEST(AtomicFile, LeavesNothingWhenDestroyedOrOpenedAnew) {
    TemporaryFolder folder;
    {
        AtomicFile first, second;
        for (AtomicFile* file : {&first, &second, &second}) {
            EXPECT_FALSE(file->open(folder / "a.txt"));
            writeText(file->path(), "half");
        }
        first = std::move(second);
        EXPECT_EQ(folder.entries(), 1);
    }
    EXPECT_EQ(folder.entries(), 0);
}

TEST(AtomicFile, RefusesTargetsThatAreNoOrdinaryFileInAnExistingFolder) {
    TemporaryFolder folder;
    writeText(folder / "file", "old");
    ::mkfifo((folder / "pipe").c_str(), 0600);
    const std::tuple<fs::path, std::errc, OSStatus> cases[] = {
        {folder / "missing/a", std::errc::no_such_file_or_directory, -43},
        {folder / "file/a", std::errc::not_a_directory, -43},
        {"", std::errc::no_such_file_or_directory, -43},
        {folder.path(), std::errc::is_a_directory, fourCC("prm?")},
        {folder / "file/", std::errc::is_a_directory, fourCC("prm?")},
        {folder / "pipe", std::errc::invalid_argument, fourCC("prm?")},
        {"/dev/null", std::errc::invalid_argument, fourCC("prm?")}};
    for (const auto& [target, expected, code] : cases) {
        AtomicFile file;
        const std::error_code error = file.open(target);
        EXPECT_EQ(error, expected) << target << ": " << error.message();
        EXPECT_EQ(audioFileStatus(error), code) << target;
    }
    EXPECT_EQ(folder.entries(), 2);
}

TEST(AtomicFile, RefusesFoldersAndFilesThatMayNotBeWritten) {
    if (::geteuid() != 0) GTEST_SKIP() << "changes the user, which only root may";
    TemporaryFolder folder;
    writeText(folder / "mine", "old");
    fs::create_directory(folder / "open");
    fs::permissions(folder / "open", fs::perms::all);
    writeText(folder / "open/mine", "old");
    fs::permissions(folder.path(), fs::perms(0755));
    ASSERT_EQ(::seteuid(65534), 0); // nobody
    for (const char* name : {"new", "mine", "open/mine"}) {
        AtomicFile file;
        EXPECT_EQ(file.open(folder / name), std::errc::permission_denied) << name;
    }
    ASSERT_EQ(::seteuid(0), 0);
}

} // namespace
} // namespace zephyra
