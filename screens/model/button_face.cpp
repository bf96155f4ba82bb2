#include "screens/model/button_face.h"

namespace zephyra {

namespace {

using namespace palette;

constexpr Color kNone{0.0f, 0.0f, 0.0f, 0.0f};
constexpr float kArmedShare = 0.33f;

/// On a panel, which is nearer than the window, a button is a step nearer as well.
ButtonColors rest(const ButtonFace& face, const ButtonReach& reach, Color ground) {
    const Color nearer = blend(kPressed, hex(0xFFFFFF, 0.06f));
    const Color nearest = blend(kPressed, hex(0xFFFFFF, 0.12f));
    const bool isOnPanel = ground == kStage && !face.isBare;
    const Color cell = face.isBare ? kNone : isOnPanel ? kPressed : kRaised;
    if (!face.isEnabled) return {cell, kDim, kNone};
    if (reach.isPressed)
        return {face.isBare ? kPressed : isOnPanel ? nearest : nearer, kBright, kNone};
    if (!reach.isHovered) return {cell, kArc, kNone};
    return {face.isBare ? kRaised : isOnPanel ? nearer : kPressed, kBright, kNone};
}

ButtonColors lit(const ButtonFace& face, const ButtonReach& reach, Color ground) {
    const Color veil = hex(0xFFFFFF, reach.isHovered || reach.isPressed ? 0.14f : 0.0f);
    const auto red = [&](float share) {
        return blend(blend(ground, {kAccent.red, kAccent.green, kAccent.blue, share}), veil);
    };
    switch (face.light) {
    case ButtonLight::alive:
        return {red(1.0f), kInk, kNone};
    case ButtonLight::armed:
        return face.isLit ? ButtonColors{red(1.0f), kInk, kAccent}
                          : ButtonColors{red(kArmedShare), kBright, kAccent};
    case ButtonLight::fading:
        return {red(kArmedShare), kBright, kNone};
    default:
        return {reach.isHovered || reach.isPressed ? kBright : kArc, kInk, kNone};
    }
}

} // namespace

ButtonColors buttonColors(const ButtonFace& face, const ButtonReach& reach, Color ground) {
    ButtonColors colors = face.light == ButtonLight::off || !face.isEnabled
                              ? rest(face, reach, ground)
                              : lit(face, reach, ground);
    if (reach.isFocused) colors.frame = kBright;
    return colors;
}

} // namespace zephyra
