// GrainTrace: every grain that RENDER starts, for pictures and displays.
#pragma once

#include "platform/threads/spsc_ring.h"

#include <cstdint>

namespace zephyra {

/// One grain as it was scheduled.
struct GrainRecord {
    std::uint64_t frame; ///< output frames rendered before it, see renderedFrames()
    float position;      ///< fraction of the source, 0..1
    float rate;          ///< Hz at which it traverses the whole source
    float length;        ///< seconds
    float gainL, gainR;  ///< linear, without the amplitude
    bool dropped;        ///< no voice was free: it does not sound
};

/// RENDER pushes; one other thread (or RENDER itself, between calls) takes. Its capacity is more
/// than one block can start.
using GrainTrace = SpscRing<GrainRecord, 8192>;

} // namespace zephyra
