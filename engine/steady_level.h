// steadyLevel: the factor that keeps a cloud as loud whatever its density and its grains' length.
#pragma once

#include "platform/threads/realtime.h"

#include <cstdint>

namespace zephyra {

/// What the loudness of a cloud depends on besides its source.
struct CloudShape {
    float length;       ///< seconds, of a grain on average
    float density;      ///< grains a second, as set
    float rndDensity;   ///< the deviation either way, a share of density
    float width;        ///< 0..1
    float windowEnergy; ///< mean square of the envelope
    std::int32_t voices;
};

/// For the level of each grain that starts. Grains that read apart from each other add up as
/// powers: so many as overlap on average, each with its envelope's energy and its share of both
/// channels. The factor leaves 1 such grain with a Hanning envelope in both channels as it is, and
/// brings all other clouds there; fewer than one grain at a time are not made louder. 0.05..20; 1
/// where nothing sensible can be said. Grains that read the same place together add up to more.
/// RENDER.
float steadyLevel(const CloudShape& shape) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
