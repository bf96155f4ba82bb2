// birdNote: one note of a bird's voice, from a fluted whistle to a rasping chirp.
#pragma once

#include "resources/make_samples/chance.h"
#include "resources/make_samples/signal.h"

#include <array>

namespace zephyra {

/// A note as the syrinx sings it. Pitch passes smoothly through four places, evenly spread over the
/// note.
struct BirdNote {
    double length;            ///< seconds
    std::array<double, 4> hz; ///< pitch at 0, 1/3, 2/3 and all of the note
    double level;             ///< amplitude, 0 to 1
    double trillHz = 0.0;     ///< swings of the pitch a second
    double trill = 0.0;       ///< how far they swing to either side, in semitones
    double rasp = 0.0;        ///< 0 to 1: how deep a fast tremor cuts into the level
    double second = 0.0; ///< pitch of the syrinx's other side against the first; 0: it is silent
};

/// The note alone, its length as given, silent at both ends.
Signal birdNote(const BirdNote& note, Chance& chance);

} // namespace zephyra
