// bowedGlass: one held glass tone under a bow, with formants that move and a little breath.
#pragma once

#include "resources/make_samples/chance.h"
#include "resources/make_samples/curve.h"
#include "resources/make_samples/signal.h"

#include <vector>

namespace zephyra {

/// A resonance of the body, which moves while the sound lasts.
struct Formant {
    Curve hz;       ///< centre over time in seconds, as log2 of Hz
    double octaves; ///< half its width
    double gain;    ///< amplitude it adds at its centre, where 1 is the unshaped tone
};

/// What all tones of one sound share: where its colour moves.
struct Timbre {
    std::vector<Formant> formants;
    Curve tilt; ///< over seconds: harmonic n has the amplitude n to the power of -tilt
};

/// One tone.
struct BowedTone {
    double hz;
    Curve pressure; ///< amplitude over time in seconds, 0 to 1
    double breath;  ///< level of the bow's noise against the tone
    double vibrato; ///< cents to either side when fully bowed
};

/// The tone over the time 0 to length seconds of the sound.
Signal bowedGlass(const BowedTone& tone, const Timbre& timbre, double length, Chance& chance);

} // namespace zephyra
