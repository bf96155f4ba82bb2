#include "controls/touch_surface.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

std::vector<TouchSurface::Touch>::iterator TouchSurface::find(TouchId touch) {
    return std::find_if(fingers_.begin(), fingers_.end(),
                        [&](const Touch& finger) { return finger.id == touch; });
}

TouchSurface::Role TouchSurface::freeRole() const {
    for (const Role role : {Role::first, Role::second})
        if (std::none_of(fingers_.begin(), fingers_.end(),
                         [&](const Touch& finger) { return finger.role == role; }))
            return role;
    return Role::other;
}

void TouchSurface::touchesBegan(TouchId touch, Point at, double time) {
    touchesEnded(touch, time);
    if (!userInteractionEnabled || !isFinite(at)) return;
    if (fingers_.size() == kMostFingers) touchesEnded(fingers_.front().id, time);
    const Role role = freeRole();
    fingers_.push_back({touch, role});
    lastTime_ = time;
    if (touchListener && role != Role::other)
        touchListener->touchBegan(role == Role::first ? Finger::first : Finger::second,
                                  fraction(at), time);
    if (find(touch) != fingers_.end()) fingerBegan(touch, at, time);
}

void TouchSurface::touchesMoved(TouchId touch, Point at, double time) {
    const auto finger = find(touch);
    if (finger == fingers_.end() || !isFinite(at)) return;
    const Role role = finger->role;
    lastTime_ = time;
    if (touchListener && role != Role::other)
        touchListener->touchMoved(role == Role::first ? Finger::first : Finger::second,
                                  fraction(at), time);
    if (find(touch) != fingers_.end()) fingerMoved(touch, at);
}

void TouchSurface::finish(TouchId touch, double time, bool cancelled) {
    const auto finger = find(touch);
    if (finger == fingers_.end()) return;
    const Role role = finger->role;
    fingers_.erase(finger);
    lastTime_ = time;
    fingerEnded(touch, cancelled);
    tellEnded(role, time);
}

void TouchSurface::tellEnded(Role role, double time) {
    if (touchListener && role != Role::other)
        touchListener->touchEnded(role == Role::first ? Finger::first : Finger::second, time);
}

void TouchSurface::forgetTouches() {
    for (const Touch& finger : std::exchange(fingers_, {})) tellEnded(finger.role, lastTime_);
}

bool TouchSurface::setSurface(double width, double height) {
    const bool usable =
        std::isfinite(width) && std::isfinite(height) && width > 0.0 && height > 0.0;
    if (!usable) return false;
    width_ = width;
    height_ = height;
    setNeedsDisplay();
    return true;
}

} // namespace zephyra
