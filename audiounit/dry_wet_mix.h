// DryWetGains: the two gains between dry and processed signal, each smoothed by one pole.
#pragma once

#include "platform/threads/realtime.h"

namespace zephyra {

/// Both gains, as they are and as they are going to be. 0..1.
struct DryWetGains {
    float wet = 0.0f, dry = 0.0f;             ///< of the last frame
    float wetTarget = 0.0f, dryTarget = 0.0f; ///< what they are smoothed towards
    float pole = 0.9992f; ///< m_a: the filter's pole, how much of a gain stays over a frame
    float step = 0.0008f; ///< m_b: 1 - pole, how much of its target comes in

    /// One frame on. RENDER.
    void advance() ZEPHYRA_NONBLOCKING {
        dry = dry * pole + step * dryTarget;
        wet = wet * pole + step * wetTarget;
    }
};

/// One channel of each signal; wet is overwritten with the mix. They do not overlap.
struct DryWetChannel {
    float* wet;
    const float* dry;
};

/// Advances the gains frame by frame and leaves wet · gain + dry · gain in the wet channels.
/// RENDER.
void mixDryWet(DryWetGains& gains, const DryWetChannel (&channels)[2],
               int frames) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
