#include "effects/effect_bodies_level.inl"

namespace zephyra {

extern const EffectBodies kEffectBodiesV3;
const EffectBodies kEffectBodiesV3{echoBody, ringBody};

} // namespace zephyra
