// BlockEvents: what a host hands over for one block, in the order of its frames, without
// allocating.
#pragma once

#include "platform/audio_unit/audio_unit_events.h"
#include "platform/threads/realtime.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace zephyra {

/// Filled before a block and taken from in it. Events of one frame keep the order in which they
/// came. RENDER.
class BlockEvents {
public:
    /// More come in one block only from hosts gone wild.
    static constexpr std::size_t kCapacity = 4096;

    /// Counts frames from the block's start. False when there is no place left.
    bool add(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING;

    /// What stands before frame `end` and was not taken yet, as a list; null for nothing. Valid
    /// until the next call.
    const AURenderEvent* take(std::uint64_t end) ZEPHYRA_NONBLOCKING;

    /// All that was not taken, in order.
    std::span<const AURenderEvent> all() const ZEPHYRA_NONBLOCKING {
        return {events_->data() + taken_, count_ - taken_};
    }
    /// The block ends after so many frames; what was not taken counts from the next one's start.
    void endBlock(std::uint32_t frames) ZEPHYRA_NONBLOCKING;
    void clear() ZEPHYRA_NONBLOCKING { count_ = taken_ = 0; }

private:
    // Their eventSampleTime is the frame in the block.
    using Array = std::array<AURenderEvent, kCapacity>;
    std::unique_ptr<Array> events_ = std::make_unique<Array>();
    std::size_t count_ = 0, taken_ = 0;
};

} // namespace zephyra
