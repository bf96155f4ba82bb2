// What several processes, or several instances of one, tell each other about files.

#include "platform/files/file_lock.h"
#include "platform/instance.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace zephyra {
namespace {

TEST(FileLock, KeepsAnotherProcessWaiting) {
    TemporaryFolder folder;
    FileLock lock;
    ASSERT_FALSE(lock.lock(folder / "lock"));
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        FileLock other;
        const bool failed = static_cast<bool>(other.lock(folder / "lock"));
        ::_exit(failed || ::write(ends[1], "x", 1) != 1);
    }
    pollfd told{ends[0], POLLIN, 0};
    EXPECT_EQ(::poll(&told, 1, 100), 0);
    lock.unlock();
    EXPECT_EQ(::poll(&told, 1, 10000), 1);
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(lock.lock(folder / "lock"));
    EXPECT_TRUE(lock.lock(folder / "missing/lock"));
    EXPECT_FALSE(lock.isLocked());
    for (const int end : ends) ::close(end);
}

TEST(SharedFolderNotices, ReachEveryInstanceOnItsOwnRunLoopUnlessItHasGone) {
    Instance here, there;
    RunLoop loop;
    NotificationCenter center;
    std::optional<SharedFolderNotices> gone(std::in_place, loop, center);
    std::string log;
    const auto hear = [&](NotificationCenter& notifications, char letter) {
        notifications.addObserver("files", [&log, letter](auto&) { log += letter; });
    };
    hear(here.notifications, 'h');
    hear(there.notifications, 't');
    hear(center, 'g');
    here.sharedFolder.post("files");
    EXPECT_EQ(log, "h");
    gone.reset();
    loop.runPosted();
    there.runLoop.runPosted();
    here.runLoop.runPosted();
    EXPECT_EQ(log, "ht");
}

} // namespace
} // namespace zephyra
