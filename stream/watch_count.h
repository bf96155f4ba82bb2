// WatchCount: how many look at what RENDER keeps for them; with none it passes that by.
#pragma once

#include "platform/threads/realtime.h"

#include <atomic>

namespace zephyra {

/// Two windows of an instance may look at the same thing. Any thread.
class WatchCount {
public:
    bool isWatched() const ZEPHYRA_NONBLOCKING {
        return count_.load(std::memory_order_relaxed) > 0;
    }

    /// One who looks, for as long as it lives; what is counted outlives it.
    class Watcher {
    public:
        explicit Watcher(WatchCount& counted) noexcept : counted_(counted) {
            counted_.count_.fetch_add(1, std::memory_order_relaxed);
        }
        ~Watcher() { counted_.count_.fetch_sub(1, std::memory_order_relaxed); }
        Watcher(const Watcher&) = delete;
        Watcher& operator=(const Watcher&) = delete;

    private:
        WatchCount& counted_;
    };

private:
    static_assert(std::atomic<int>::is_always_lock_free);
    std::atomic<int> count_ = 0;
};

} // namespace zephyra
