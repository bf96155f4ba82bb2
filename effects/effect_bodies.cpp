#include "effects/effect_bodies.h"

namespace zephyra {

extern const EffectBodies kEffectBodiesBaseline;
#if defined(__x86_64__)
extern const EffectBodies kEffectBodiesV3;
extern const EffectBodies kEffectBodiesV4;
#endif

EffectBodies effectBodiesFor([[maybe_unused]] CpuLevel level) noexcept {
#if defined(__x86_64__)
    if (level >= CpuLevel::v4) return kEffectBodiesV4;
    if (level >= CpuLevel::v3) return kEffectBodiesV3;
#endif
    return kEffectBodiesBaseline;
}

} // namespace zephyra
