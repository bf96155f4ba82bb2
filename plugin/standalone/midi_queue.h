// MidiQueue: MIDI from devices and keys, on its way into the next block.
#pragma once

#include "platform/threads/realtime.h"
#include "platform/threads/spsc_ring.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>

namespace zephyra {

/// Any threads but RENDER push, RENDER takes. Messages keep their distance in time: what came while
/// the last block was heard acts in this one, as far from its start. Longer than three bytes
/// (system exclusive) are ignored; a full queue loses the newest.
class MidiQueue {
public:
    /// seconds: when it came, of the clock that take() is given. Any thread but RENDER.
    void push(std::span<const std::uint8_t> bytes, double seconds) {
        Message message{.seconds = seconds, .length = bytes.size()};
        if (bytes.empty() || bytes.size() > message.bytes.size()) return;
        std::ranges::copy(bytes, message.bytes.begin());
        const std::lock_guard only(pushing_); // several devices, and keys
        ring_.push(message);
    }

    /// Hands what waits to play(bytes, length, frame), frame below frames. seconds: now, at the
    /// block's start. RENDER.
    template <typename Play>
    void take(double seconds, double rate, std::uint32_t frames, const Play& play) {
        const double last = frames > 0 ? frames - 1.0 : 0.0;
        const double from = lastBlock_ > 0.0 ? lastBlock_ : seconds;
        for (Message message; ring_.take(message);) {
            const double frame = std::clamp((message.seconds - from) * rate, 0.0, last);
            play(message.bytes.data(), message.length, static_cast<std::uint32_t>(frame));
        }
        lastBlock_ = seconds;
    }

private:
    struct Message {
        double seconds = 0.0;
        std::array<std::uint8_t, 3> bytes{};
        std::size_t length = 0;
    };
    std::mutex pushing_;
    SpscRing<Message, 1024> ring_;
    double lastBlock_ = 0.0; // RENDER
};

} // namespace zephyra
