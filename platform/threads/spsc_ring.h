// SpscRing: a lock-free ring buffer, single producer, single consumer.
#pragma once

#include "platform/threads/realtime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace zephyra {

/// One thread pushes, one other takes. Keeps order and coalesces nothing. A full ring counts what
/// it loses instead of waiting.
template <typename Item, std::size_t Capacity>
class SpscRing {
public:
    static_assert(std::is_trivially_copyable_v<Item>);
    static_assert((Capacity & (Capacity - 1)) == 0, "indexes wrap without a division");
    static constexpr std::size_t kCapacity = Capacity;

    /// False when the ring was full and item is lost. The producer's thread.
    bool push(const Item& item) ZEPHYRA_NONBLOCKING {
        const std::size_t head = head_.load(std::memory_order_relaxed);
        if (head - tail_.load(std::memory_order_acquire) == Capacity) {
            lost_.fetch_add(1, std::memory_order_relaxed);
            return false;
        }
        ring_[head % Capacity] = item;
        head_.store(head + 1, std::memory_order_release);
        return true;
    }

    /// Moves the oldest item into item; false when there is none. The consumer's thread.
    bool take(Item& item) ZEPHYRA_NONBLOCKING {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        if (tail == head_.load(std::memory_order_acquire)) return false;
        item = ring_[tail % Capacity];
        tail_.store(tail + 1, std::memory_order_release);
        return true;
    }

    /// Items that found the ring full. Any thread.
    std::uint64_t lost() const ZEPHYRA_NONBLOCKING { return lost_.load(std::memory_order_relaxed); }

private:
    std::array<Item, Capacity> ring_{};
    std::atomic<std::size_t> head_{0}, tail_{0};
    std::atomic<std::uint64_t> lost_{0};
};

} // namespace zephyra
