// TouchListener: who follows the first two fingers on a surface.
#pragma once

#include "controls/control.h"

#include <cstdint>

namespace zephyra {

/// What tells one finger from another while it touches; a screen may use it again afterwards.
using TouchId = std::uint64_t;

/// The two fingers that modulation knows.
enum class Finger { first, second };

/// Points are fractions of the surface: x from 0 at the left to 1, y from 0 at the top to 1 at the
/// bottom; a finger that left the surface may lie beyond. Times are seconds on the screen's clock.
/// Each finger that begins also ends. MAIN.
class TouchListener {
public:
    virtual ~TouchListener() = default;
    virtual void touchBegan(Finger finger, Point at, double time) = 0;
    virtual void touchMoved(Finger finger, Point at, double time) = 0;
    virtual void touchEnded(Finger finger, double time) = 0;
};

} // namespace zephyra
