// ButtonFace: what a button of the window shows, and which colours that has.
#pragma once

#include "screens/model/palette.h"

namespace zephyra {

/// What a button says of its matter.
enum class ButtonLight {
    off,
    on,     ///< a switch that is on: white
    armed,  ///< waits for the downbeat
    alive,  ///< goes on by itself now: playing, live
    fading, ///< still goes on, but ends
};

/// Plain data.
struct ButtonFace {
    ButtonLight light = ButtonLight::off;
    bool isEnabled = true;
    bool isBare = false; ///< has no cell of its own at rest: arrows, star
    bool isLit = false;  ///< armed: on each beat for a moment
    bool operator==(const ButtonFace&) const = default;
};

/// How near a hand is to it.
struct ButtonReach {
    bool isHovered = false, isPressed = false, isFocused = false;
    bool operator==(const ButtonReach&) const = default;
};

/// Opaque but for an alpha of 0, which is not drawn.
struct ButtonColors {
    Color fill, sign, frame;
};

/// On ground, which is opaque. The sign is read on the fill, at least 4.5 to 1.
ButtonColors buttonColors(const ButtonFace& face, const ButtonReach& reach,
                          Color ground = palette::kGround);

} // namespace zephyra
