// glassStrike: one struck glass, a bell-like tone that rings out.
#pragma once

#include "resources/make_samples/chance.h"
#include "resources/make_samples/signal.h"

namespace zephyra {

/// How a glass is struck.
struct Strike {
    double hz;     ///< its lowest mode
    double attack; ///< seconds until the tone stands: 0.001 a hard mallet, 0.05 a fingertip
    double decay;  ///< seconds until the lowest mode has fallen by 60 dB
    double
        hardness; ///< 0 to 1: how much of the high modes sounds, and how loud the mallet's knock is
};

/// The tone and its knock, `length` seconds long, about 1 at its peak.
Signal glassStrike(const Strike& strike, double length, Chance& chance);

} // namespace zephyra
