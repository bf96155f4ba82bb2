// The inner body for AVX-512, still eight samples side by side: wider lanes were never run by us,
// and an inner body that nobody heard has no place on stage.

#include "engine/grain_mix_avx2.inl"

namespace zephyra {

int mixGrainV4(mokGrain& grain, const GrainTables& tables,
               const GrainMix& mix) ZEPHYRA_NONBLOCKING {
    return mixGrain(grain, tables, mix);
}

} // namespace zephyra
