// DirtyMask: a dirty bit for each parameter, set as it gets a new value, in one lock-free word.
#pragma once

#include "platform/threads/realtime.h"

#include <atomic>
#include <cstdint>

namespace zephyra {

/// A bit per address 0 to 31. The value is stored before its address is marked and read after the
/// mask was taken, so that the newest value is never missed; several marks of one address coalesce.
class DirtyMask {
public:
    /// Addresses above 31 are ignored. Any thread.
    void mark(std::uint64_t address) ZEPHYRA_NONBLOCKING {
        if (address < 32) bits_.fetch_or(1u << address, std::memory_order_release);
    }

    /// The marked addresses as bits, which are cleared. MAIN.
    std::uint32_t take() ZEPHYRA_NONBLOCKING {
        if (bits_.load(std::memory_order_relaxed) == 0) return 0;
        return bits_.exchange(0, std::memory_order_acq_rel);
    }

private:
    static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
    std::atomic<std::uint32_t> bits_{0};
};

} // namespace zephyra
