#include "audiounit/dry_wet_mix.h"

namespace zephyra {

namespace {

float mixed(const DryWetGains& gains, float wet, float dry) ZEPHYRA_NONBLOCKING {
    return wet * gains.wet + dry * gains.dry;
}

/// Frames from first on with gains that stand still.
void mixSteady(const DryWetGains& gains, const DryWetChannel& channel, int first,
               int frames) ZEPHYRA_NONBLOCKING {
    const DryWetGains steady = gains; // nothing that is written can change it
    float* const __restrict wet = channel.wet;
    const float* const __restrict dry = channel.dry;
    for (int i = first; i < frames; ++i) wet[i] = mixed(steady, wet[i], dry[i]);
}

} // namespace

void mixDryWet(DryWetGains& gains, const DryWetChannel (&channels)[2],
               int frames) ZEPHYRA_NONBLOCKING {
    DryWetGains now = gains;
    int i = 0;
    for (; i < frames; ++i) {
        const DryWetGains before = now;
        now.advance();
        // Rounding ends the smoothing: once a frame changes neither gain, no later one will.
        if (now.wet == before.wet && now.dry == before.dry) break;
        for (const DryWetChannel& channel : channels)
            channel.wet[i] = mixed(now, channel.wet[i], channel.dry[i]);
    }
    gains = now;
    for (const DryWetChannel& channel : channels) mixSteady(gains, channel, i, frames);
}

} // namespace zephyra
