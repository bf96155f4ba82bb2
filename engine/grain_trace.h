// GrainTrace: every grain that RENDER starts, for pictures and displays.
#pragma once

#include "platform/realtime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// One grain as it was scheduled.
struct GrainRecord {
    std::uint64_t frame; ///< output frames rendered before it, since the stream was made
    float position;      ///< fraction of the source, 0..1
    float rate;          ///< Hz at which it traverses the whole source
    float length;        ///< seconds
    float gainL, gainR;  ///< linear, without the amplitude
    bool dropped;        ///< no voice was free: it does not sound
};

/// A single-producer, single-consumer ring. RENDER pushes; one other thread (or RENDER itself,
/// between calls) takes. A full ring counts what it loses instead of waiting.
class GrainTrace {
public:
    static constexpr std::size_t kCapacity = 8192; // more than one block can start

    /// RENDER.
    void push(const GrainRecord& record) ZEPHYRA_NONBLOCKING {
        const std::size_t head = head_.load(std::memory_order_relaxed);
        if (head - tail_.load(std::memory_order_acquire) == kCapacity) {
            lost_.fetch_add(1, std::memory_order_relaxed);
            return;
        }
        ring_[head % kCapacity] = record;
        head_.store(head + 1, std::memory_order_release);
    }

    /// Moves the oldest record into record; false when there is none. The consumer's thread.
    bool take(GrainRecord& record) ZEPHYRA_NONBLOCKING {
        const std::size_t tail = tail_.load(std::memory_order_relaxed);
        if (tail == head_.load(std::memory_order_acquire)) return false;
        record = ring_[tail % kCapacity];
        tail_.store(tail + 1, std::memory_order_release);
        return true;
    }

    /// Records that found the ring full. Any thread.
    std::uint64_t lost() const noexcept { return lost_.load(std::memory_order_relaxed); }

private:
    std::array<GrainRecord, kCapacity> ring_{};
    std::atomic<std::size_t> head_{0}, tail_{0};
    std::atomic<std::uint64_t> lost_{0};
};

} // namespace zephyra
