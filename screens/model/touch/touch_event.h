// TouchEvent: a moment in the life of a finger on a touch screen.
#pragma once

#include "controls/touch_listener.h"

namespace zephyra {

enum class TouchPhase {
    began,
    moved,
    ended,
    cancelled, ///< the system took the finger away: nothing was tapped
};

/// Plain data.
struct TouchEvent {
    TouchId id = 0; ///< of no other finger while it touches; never of the mouse
    TouchPhase phase = TouchPhase::began;
    Point at;          ///< pixels; not finite where it is not known: where the finger was
    double time = 0.0; ///< seconds on any clock that goes forwards
};

} // namespace zephyra
