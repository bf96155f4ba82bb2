// grainMixer: the inner body of the engine, which renders one grain into a stereo pair.
#pragma once

#include "engine/grain_voice.h"
#include "platform/cpu_level.h"

namespace zephyra {

/// Where a grain goes: count samples from the start of left and right, which must not overlap with
/// the tables.
struct GrainMix {
    float gainL, gainR;
    float* left;
    float* right;
    int count;
};

/// Adds up to mix.count samples of an active grain to mix (one fused multiply-add a channel) and
/// answers how many it rendered: fewer when the grain ended (active is clear then) or the source is
/// not ready. Phases and sound are bit for bit those of mokGrain::Processing on every level.
/// RENDER.
using GrainMixer = int (*)(mokGrain& grain, const GrainTables& tables,
                           const GrainMix& mix) ZEPHYRA_NONBLOCKING;

/// The mixer for a level; the caller sees to it that the processor has it. Any thread.
GrainMixer grainMixer(CpuLevel level) noexcept;

} // namespace zephyra
