// The inner body for AVX2 and FMA: eight samples side by side.

#include "engine/grain_mix_avx2.inl"

namespace zephyra {

int mixGrainV3(mokGrain& grain, const GrainTables& tables,
               const GrainMix& mix) ZEPHYRA_NONBLOCKING {
    return mixGrain(grain, tables, mix);
}

} // namespace zephyra
