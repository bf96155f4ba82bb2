// LatestMidi: coalesces MIDI, keeping the newest message of each kind when a queue is full.
#pragma once

#include "platform/audio_unit/midi_message.h"
#include "platform/threads/realtime.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace zephyra {

/// One word for each controller, each note (on and off share it) and its pressure, and each
/// channel's program, pressure and bend. One thread stores, one other takes.
class LatestMidi {
public:
    /// False when an older message that nobody took made way. RENDER.
    bool store(const MidiMessage& message) ZEPHYRA_NONBLOCKING {
        const std::uint32_t before =
            words_[wordOf(message)].exchange(packed(message), std::memory_order_acq_rel);
        if (before == kNone) held_.fetch_add(1, std::memory_order_acq_rel);
        return before == kNone;
    }

    /// Whether there may be something to take. While the storing thread sees it, the taking one has
    /// not come to an end with what was stored. Either thread.
    bool any() const ZEPHYRA_NONBLOCKING { return held_.load(std::memory_order_acquire) > 0; }

    /// Hands each message to deliver, banks before programs. MAIN.
    template <typename Deliver>
    void take(const Deliver& deliver) {
        int taken = 0;
        for (std::atomic<std::uint32_t>& word : words_) {
            if (word.load(std::memory_order_relaxed) == kNone) continue;
            const std::uint32_t message = word.exchange(kNone, std::memory_order_acq_rel);
            ++taken;
            deliver(unpacked(message));
        }
        held_.fetch_sub(taken, std::memory_order_acq_rel);
    }

private:
    static constexpr std::uint32_t kNone = 0; // no message: a status is never 0
    static constexpr std::size_t kNumbers = 128, kChannels = 16;
    static constexpr std::size_t kControllers = 0, kNotes = kChannels * kNumbers,
                                 kPressures = 2 * kNotes, kPrograms = 3 * kNotes,
                                 kWords = kPrograms + 3 * kChannels;

    static std::size_t wordOf(const MidiMessage& message) ZEPHYRA_NONBLOCKING {
        const auto channel = static_cast<std::size_t>(message.channel() - 1);
        const std::size_t numbered =
            channel * kNumbers + static_cast<std::size_t>(message.data1() & 0x7F);
        switch (message.kind()) {
        case MidiKind::controller:
            return kControllers + numbered;
        case MidiKind::polyPressure:
            return kPressures + numbered;
        case MidiKind::program:
            return kPrograms + channel;
        case MidiKind::channelPressure:
            return kPrograms + kChannels + channel;
        case MidiKind::pitchBend:
            return kPrograms + 2 * kChannels + channel;
        default:
            return kNotes + numbered;
        }
    }
    static std::uint32_t packed(const MidiMessage& message) ZEPHYRA_NONBLOCKING {
        return std::uint32_t{message.bytes[0]} | std::uint32_t{message.bytes[1]} << 8 |
               std::uint32_t{message.bytes[2]} << 16;
    }
    static MidiMessage unpacked(std::uint32_t word) {
        return {{static_cast<std::uint8_t>(word), static_cast<std::uint8_t>(word >> 8),
                 static_cast<std::uint8_t>(word >> 16)}};
    }

    static_assert(std::atomic<std::uint32_t>::is_always_lock_free &&
                  std::atomic<int>::is_always_lock_free);
    std::array<std::atomic<std::uint32_t>, kWords> words_{};
    // Counted down once a whole round is over. A message may be taken just before it is counted,
    // which makes it less than 0 for a moment.
    std::atomic<int> held_{0};
};

} // namespace zephyra
