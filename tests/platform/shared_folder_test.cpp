// What several processes, or several instances of one, tell each other about files.

#include "platform/clock.h"
#include "platform/files/file_lock.h"
#include "platform/instance.h"
#include "tests/support/temporary_folder.h"

#include <cstdlib>
#include <gmock/gmock.h>
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

TEST(LocalTime, WritesTheClocksMomentInTheZoneOfThePlace) {
    const struct {
        std::uint32_t seconds;
        const char *zone, *expected;
    } cases[] = {{1794750533u, "UTC", "15.11.2026 13:48:53"},
                 {1794750533u, "HERE-10:30", "16.11.2026 00:18:53"},
                 {3000000000u, "UTC", "24.01.2065 05:20:00"}};
    for (const auto& [seconds, place, expected] : cases) {
        Clock clock;
        clock.fix(seconds);
        ::setenv("TZ", place, 1);
        const DateAndTime now = currentDateAndTime(clock);
        EXPECT_EQ(now.date + " " + now.time, expected);
    }
    ::unsetenv("TZ");
}

} // namespace
} // namespace zephyra
