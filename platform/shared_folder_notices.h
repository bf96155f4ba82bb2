// SharedFolderNotices: notices about the shared folder, which every instance of the process hears.
#pragma once

#include "platform/notification_center.h"
#include "platform/threads/run_loop.h"

#include <memory>
#include <string>

namespace zephyra {

/// A member of Instance; while it lives, the instance hears what others post. Made and destroyed on
/// MAIN.
class SharedFolderNotices {
public:
    /// Both must outlive this.
    SharedFolderNotices(RunLoop& runLoop, NotificationCenter& notifications);
    ~SharedFolderNotices();
    SharedFolderNotices(const SharedFolderNotices&) = delete;
    SharedFolderNotices& operator=(const SharedFolderNotices&) = delete;

    /// Posts name at the own notification center at once, and at every other instance's on its run
    /// loop. MAIN.
    void post(const std::string& name);

private:
    RunLoop& runLoop_;
    NotificationCenter& notifications_;
    std::shared_ptr<const bool> alive_; // what waits in run loops holds it weakly
};

/// The folder's sounds, or its banks, are others now; no object.
namespace shared_folder_notice {
inline constexpr const char* kSamples = "fillTableWithFilesName";
inline constexpr const char* kBanks = "fillTableWithBankName";
} // namespace shared_folder_notice

} // namespace zephyra
