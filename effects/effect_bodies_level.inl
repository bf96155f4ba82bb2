// One level's loops: a file per instruction-set level includes this and names the result.

#include "effects/effect_bodies.h"
#include "effects/ring_modulator.h"
#include "effects/stereo_echo.h"

#include <cstdint>

#if defined(__AVX2__)
#include <immintrin.h>
#endif

namespace zephyra {

namespace {

#include "effects/vector_lanes.inl"

#include "effects/echo_body.inl"
#include "effects/ring_body.inl"

} // namespace

} // namespace zephyra
