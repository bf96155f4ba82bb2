// RenderCycle and Retirement: deferred reclamation, so that MAIN frees a replaced object only when
// no render call can see it any more.
#pragma once

#include "platform/threads/disposal.h"
#include "platform/threads/realtime.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace zephyra {

/// Counts render calls: odd while one runs, even between calls. RENDER counts itself in before it
/// takes its snapshot of any shared pointer and out after its last use of them. Both sides use
/// sequentially consistent order: either RENDER sees the new pointer, or MAIN sees the odd count.
class RenderCycle {
public:
    /// RENDER: one call's stay, entered on construction and left on destruction.
    class Scope {
    public:
        explicit Scope(RenderCycle& cycle) ZEPHYRA_NONBLOCKING : cycle_(cycle) {
            cycle_.count_.fetch_add(1);
        }
        ~Scope() ZEPHYRA_NONBLOCKING { cycle_.count_.fetch_add(1); }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        RenderCycle& cycle_;
    };

    /// Any thread.
    std::uint64_t count() const noexcept { return count_.load(); }

private:
    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
    std::atomic<std::uint64_t> count_{0};
};

/// The deferred frees: keeps replaced objects alive until no render call can still be using them.
/// MAIN; destroyed OFF.
class Retirement {
public:
    /// Whether RENDER uses an object from one call to the next, as RENDER says, in sequentially
    /// consistent order, inside the call that took it.
    using Held = std::function<bool(const void*)>;

    explicit Retirement(const RenderCycle& cycle, Held held = {})
        : cycle_(cycle), held_(std::move(held)) {}

    /// Bytes from which on an object is large: MAIN hands those on to be freed elsewhere.
    static constexpr std::size_t kLargeBytes = std::size_t{1} << 22;

    /// Takes an object that RENDER could see until just now; call it after its pointer was
    /// replaced. Frees it at once when no render call is under way, else in a later collect().
    void retire(std::shared_ptr<const void> object, std::size_t bytes = 0) {
        if (object) waiting_.push_back({std::move(object), cycle_.count(), bytes >= kLargeBytes});
        collect();
    }

    /// Frees what no render call can see any more: those retired while none ran, and those whose
    /// call has ended since; but nothing that is held.
    void collect() {
        const std::uint64_t now = cycle_.count();
        std::erase_if(waiting_, [this, now](Entry& entry) {
            const bool hasPassed = entry.count % 2 == 0 || entry.count != now;
            const bool isFree = hasPassed && !(held_ && held_(entry.object.get()));
            if (isFree && entry.isLarge) disposal_.take(std::move(entry.object));
            return isFree;
        });
    }

    /// How many objects still wait.
    std::size_t waiting() const noexcept { return waiting_.size(); }

private:
    struct Entry {
        std::shared_ptr<const void> object;
        std::uint64_t count; // of render calls, when it was retired
        bool isLarge;
    };
    const RenderCycle& cycle_;
    Held held_;
    std::vector<Entry> waiting_;
    Disposal disposal_;
};

} // namespace zephyra
