// The inner body with AVX2 and FMA, for the levels that have them; each compiles it for itself.

#include "engine/grain_mix.h"
#include "engine/grain_mix_levels.h"

#include <immintrin.h>
#include <type_traits>

namespace zephyra {
namespace {

inline float fusedMultiplyAdd(float a, float b, float c) ZEPHYRA_NONBLOCKING {
    return _mm_cvtss_f32(_mm_fmadd_ss(_mm_set_ss(a), _mm_set_ss(b), _mm_set_ss(c)));
}

struct StraightMix;

struct Lanes {
    static constexpr int width = 8;
    static void mixStraight(const StraightMix& run) ZEPHYRA_NONBLOCKING;
    static void mixRare(const StraightMix& run) ZEPHYRA_NONBLOCKING;
};

} // namespace
} // namespace zephyra

#include "engine/grain_mix.inl"

namespace zephyra {
namespace {

#include "engine/grain_lanes_avx2.inl"

} // namespace
} // namespace zephyra
