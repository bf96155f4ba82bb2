// RenderedBlock: a part of a render as it comes out of the loop, with what made it.
#pragma once

#include "engine/grain_trace.h"

#include <algorithm>
#include <cstdint>
#include <span>

namespace zephyra {

/// How the scan goes through a cycle.
struct CycleScan {
    bool plays = false;         ///< grains start; else it stands, and nobody hears where
    double phase = 0;           ///< where in its region it begins, 0 to 1
    double travel = 0;          ///< regions that it crosses by the cycle's end
    double start = 0, span = 1; ///< of the region; fractions of the buffer that is read
};

/// A part of a block that was rendered at one go: MAIN stood still meanwhile.
struct RenderedCycle {
    std::uint32_t end; ///< frames from the block's start; the next one begins there
    float amplitude;   ///< that its grains started with
    CycleScan scan = {};
    std::uint64_t heard = 0; ///< frames of live input that the sound it is cut from ends with
};

/// One block as it was rendered.
struct RenderedBlock {
    std::uint64_t firstFrame;
    std::uint32_t frames;
    float* left; ///< may be overwritten
    float* right;
    std::span<const GrainRecord> grains;   ///< those that were scheduled in it
    std::span<const RenderedCycle> cycles; ///< in order; at least one
    std::span<const float> moved = {};     ///< linear values of the plan's moved controls, after it

    /// Of a frame of the output that lies in this block.
    const RenderedCycle& cycleOf(std::uint64_t frame) const {
        return *std::ranges::upper_bound(cycles, frame - firstFrame, {}, &RenderedCycle::end);
    }
};

/// What was counted over the blocks of a whole render.
struct RenderStatistics {
    std::uint64_t startedGrains = 0, droppedGrains = 0;
    double renderSeconds = 0; ///< of this machine's time, the consumer's not counted
};

} // namespace zephyra
