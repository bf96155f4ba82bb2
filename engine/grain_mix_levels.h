// mixGrainBaseline, mixGrainV3, mixGrainV4: the inner body of grain_mix.h, built per level.
#pragma once

#include "engine/grain_mix.h"

namespace zephyra {

/// For every processor of the target. RENDER.
int mixGrainBaseline(mokGrain& grain, const GrainTables& tables,
                     const GrainMix& mix) ZEPHYRA_NONBLOCKING;
/// For AVX2 and FMA. RENDER.
int mixGrainV3(mokGrain& grain, const GrainTables& tables, const GrainMix& mix) ZEPHYRA_NONBLOCKING;
/// For AVX-512. RENDER.
int mixGrainV4(mokGrain& grain, const GrainTables& tables, const GrainMix& mix) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
