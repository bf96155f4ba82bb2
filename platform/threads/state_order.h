// StateOrder: counts the states that were asked for, so that a value knows which ones it followed.
#pragma once

#include "platform/threads/realtime.h"

#include <atomic>
#include <bit>
#include <cstdint>
#include <optional>

namespace zephyra {

/// A state is asked for at one moment and restored on MAIN at a later one. What is set in between
/// is newer than the state; its number, that of the last state asked for, says so.
class StateOrder {
public:
    using Number = std::uint32_t; ///< 0: older than every state

    /// The number of the state that is asked for now. Any thread.
    Number ask() ZEPHYRA_NONBLOCKING { return last_.fetch_add(1, std::memory_order_acq_rel) + 1; }
    /// The same for one that MAIN asks for: the number of the message that it delivers, when that
    /// chose it and has one of its own. MAIN.
    Number askOnMain() { return delivered_ && chooses_ ? *delivered_ : ask(); }
    /// The number of what is set now. Any thread.
    Number now() const ZEPHYRA_NONBLOCKING { return last_.load(std::memory_order_acquire); }

    /// While it lives, MAIN delivers a message that was sent at that number. chooses: it asked for
    /// the number itself, because it may choose a state. Not one inside another. MAIN.
    class Delivery {
    public:
        Delivery(StateOrder& order, Number sent, bool chooses = false) : order_(order) {
            order_.delivered_ = sent;
            order_.chooses_ = chooses;
        }
        ~Delivery() { order_.delivered_.reset(); }
        Delivery(const Delivery&) = delete;
        Delivery& operator=(const Delivery&) = delete;

    private:
        StateOrder& order_;
    };
    /// The number of what a message moves; nothing while none is delivered. MAIN.
    std::optional<Number> delivered() const { return delivered_; }

private:
    static_assert(std::atomic<Number>::is_always_lock_free);
    std::atomic<Number> last_{0};
    std::optional<Number> delivered_;
    bool chooses_ = false; // what is delivered
};

/// A number with its place in that order, in one lock-free word. Any thread.
class OrderedValue {
public:
    float load() const ZEPHYRA_NONBLOCKING { return unpacked(word_.load(kOrder)).value; }

    void store(float value, StateOrder::Number number) ZEPHYRA_NONBLOCKING {
        word_.store(packed({value, number}), kOrder);
    }
    /// The same, unless what stands there was set since state was asked for: false, then.
    bool storeUnlessSince(float value, StateOrder::Number number,
                          StateOrder::Number state) ZEPHYRA_NONBLOCKING {
        std::uint64_t held = word_.load(kOrder);
        do {
            if (unpacked(held).number >= state) return false;
        } while (!word_.compare_exchange_weak(held, packed({value, number}), kOrder));
        return true;
    }
    bool isSince(StateOrder::Number state) const ZEPHYRA_NONBLOCKING {
        return unpacked(word_.load(kOrder)).number >= state;
    }

private:
    struct Content {
        float value;
        StateOrder::Number number;
    };
    static constexpr std::memory_order kOrder = std::memory_order_relaxed;

    static std::uint64_t packed(Content content) ZEPHYRA_NONBLOCKING {
        return std::bit_cast<std::uint64_t>(content);
    }
    static Content unpacked(std::uint64_t word) ZEPHYRA_NONBLOCKING {
        return std::bit_cast<Content>(word);
    }

    static_assert(std::atomic<std::uint64_t>::is_always_lock_free);
    std::atomic<std::uint64_t> word_{0};
};

} // namespace zephyra
