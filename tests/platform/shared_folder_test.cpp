// What several instances tell each other about files.

#include "platform/instance.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

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
