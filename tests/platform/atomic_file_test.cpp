#include "platform/files/atomic_file.h"

#include "platform/sound/audio_file_error.h"
#include "tests/support/testing.h"

#include <sys/stat.h>
#include <unistd.h>

namespace zephyra {
namespace {

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
