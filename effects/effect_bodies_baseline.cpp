#include "effects/effect_bodies_level.inl"

namespace zephyra {

extern const EffectBodies kEffectBodiesBaseline;
const EffectBodies kEffectBodiesBaseline{echoBody, ringBody};

} // namespace zephyra
