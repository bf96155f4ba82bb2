// Relaxed: a lock-free atomic in relaxed memory order, a number that crosses between threads.
#pragma once

#include "platform/threads/realtime.h"

#include <atomic>

namespace zephyra {

/// An atomic that is read and written in relaxed order: each value arrives whole, and several
/// values may arrive in different blocks. Any thread.
template <typename Value>
class Relaxed {
public:
    static_assert(std::atomic<Value>::is_always_lock_free, "RENDER may not wait for a lock");

    Relaxed() noexcept = default;
    Relaxed(Value value) noexcept : value_(value) {}
    Relaxed(const Relaxed&) = delete;
    Relaxed& operator=(const Relaxed&) = delete;

    Value load() const ZEPHYRA_NONBLOCKING { return value_.load(std::memory_order_relaxed); }
    void store(Value value) ZEPHYRA_NONBLOCKING { value_.store(value, std::memory_order_relaxed); }
    operator Value() const ZEPHYRA_NONBLOCKING { return load(); }
    Value operator=(Value value) ZEPHYRA_NONBLOCKING {
        store(value);
        return value;
    }

private:
    std::atomic<Value> value_{};
};

} // namespace zephyra
