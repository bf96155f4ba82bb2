// addRoom: a small diffuse reverberation that puts the dry synthesis somewhere.
#pragma once

#include "resources/make_samples/signal.h"

namespace zephyra {

/// How a place sounds.
struct Room {
    double size;        ///< factor on the delays, 1 is a hall of about 15 m, above 0
    double decay;       ///< seconds until the low end has fallen by 60 dB
    double brightness;  ///< 0 to 1: how much of the high end every reflection keeps
    double preDelay;    ///< seconds before the first reflection
    double wetDecibels; ///< level of the reverberation against the dry sound
};

/// Adds the room's answer to sound, whose length stays.
void addRoom(Signal& sound, const Room& room);

} // namespace zephyra
