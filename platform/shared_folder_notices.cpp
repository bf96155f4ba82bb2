#include "platform/shared_folder_notices.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace zephyra {

namespace {

/// Every instance of the process. Under its mutex only the queues of run loops are locked.
struct Registry {
    std::mutex mutex;
    std::vector<SharedFolderNotices*> members;
};

Registry& registry() {
    static Registry theOne;
    return theOne;
}

} // namespace

SharedFolderNotices::SharedFolderNotices(RunLoop& runLoop, NotificationCenter& notifications)
    : runLoop_(runLoop), notifications_(notifications), alive_(std::make_shared<const bool>(true)) {
    const std::lock_guard lock(registry().mutex);
    registry().members.push_back(this);
}

SharedFolderNotices::~SharedFolderNotices() {
    const std::lock_guard lock(registry().mutex);
    std::erase(registry().members, this);
}

void SharedFolderNotices::post(const std::string& name) {
    {
        // Held until all have it: none of them may go before.
        const std::lock_guard lock(registry().mutex);
        for (SharedFolderNotices* const other : registry().members) {
            if (other == this) continue;
            // Runs as the other's MAIN, on which it is destroyed, too: alive now is alive then.
            other->runLoop_.post([other, name, alive = std::weak_ptr(other->alive_)] {
                if (!alive.expired()) other->notifications_.post(name);
            });
        }
    }
    notifications_.post(name);
}

} // namespace zephyra
