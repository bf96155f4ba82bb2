#include "effects/effect_bodies_level.inl"

namespace zephyra {

extern const EffectBodies kEffectBodiesV4;
const EffectBodies kEffectBodiesV4{echoBody, ringBody};

} // namespace zephyra
