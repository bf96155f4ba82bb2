// WatchCount: how many look at what RENDER keeps for them; with none it passes that by.
#pragma once

#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"

namespace zephyra {

/// Two windows of an instance may look at the same thing.
class WatchCount {
public:
    bool isWatched() const ZEPHYRA_NONBLOCKING { return count_ > 0; }

    /// One who looks, for as long as it lives. MAIN; what is counted outlives it.
    class Watcher {
    public:
        explicit Watcher(WatchCount& counted) noexcept : counted_(counted) {
            counted_.count_ = counted_.count_ + 1;
        }
        ~Watcher() { counted_.count_ = counted_.count_ - 1; }
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;

    private:
        WatchCount& counted_;
    };

private:
    Relaxed<int> count_ = 0; // written by MAIN alone
};

} // namespace zephyra
