// RenderNotice: an event that RENDER sends MAIN through a lock-free queue, in order.
#pragma once

#include "platform/threads/spsc_ring.h"
#include "platform/threads/state_order.h"

#include <cstddef>
#include <cstdint>

namespace zephyra {

enum class RenderNoticeKind : std::uint8_t {
    bar,         ///< the beat position came to a bar's start
    rewind,      ///< the host's position is at or past 0 again
    start,       ///< the host's transport started
    forceToPlay, ///< it started in a cycle that begins a bar
    stop,        ///< it stopped
    noteOn,
};

struct RenderNotice {
    RenderNoticeKind kind;
    std::uint8_t note = 0;
    std::uint8_t velocity = 0;
    StateOrder::Number number = 0; ///< of a note: of the last state that was asked for before
};

/// RENDER pushes, MAIN takes. Room for what a second of the densest stream sends.
using RenderNotices = SpscRing<RenderNotice, 8192>;

} // namespace zephyra
