// TouchSurface: a control that fingers play, each known by its identity.
#pragma once

#include "controls/touch_listener.h"

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

/// A screen reports every finger as begin, moves and end or cancel, in the control's points. A
/// begin with an identity that is in use ends the old finger first; moves and ends of unknown
/// fingers are ignored, and so is every point that is not finite. MAIN.
class TouchSurface : public Control {
public:
    /// More fingers than this at once: the oldest one ends.
    static constexpr std::size_t kMostFingers = 16;

    explicit TouchSurface(std::string key = {}) : Control(std::move(key)) {}

    /// Hears of the first two fingers; a third one becomes neither of them when one ends. Null, or
    /// it outlives this.
    TouchListener* touchListener = nullptr;

    /// time: seconds on the screen's clock. Nothing begins while interaction is off.
    void touchesBegan(TouchId touch, Point at, double time);
    void touchesMoved(TouchId touch, Point at, double time);
    void touchesEnded(TouchId touch, double time) { finish(touch, time, false); }
    void touchesCancelled(TouchId touch, double time) { finish(touch, time, true); }

    /// Fingers on the surface.
    std::size_t numberOfTouches() const noexcept { return fingers_.size(); }

protected:
    // Each finger that begins also ends, unless it was forgotten meanwhile.
    virtual void fingerBegan(TouchId touch, Point at, double time) = 0;
    virtual void fingerMoved(TouchId touch, Point at) = 0;
    virtual void fingerEnded(TouchId touch, bool cancelled) = 0;

    /// Forgets the fingers without a call: the listener hears that they ended, and what is reported
    /// of them later is ignored.
    void forgetTouches();

    /// The size in points; finite and above 0, else nothing changes and the answer is false.
    bool setSurface(double width, double height);
    double surfaceHeight() const noexcept { return height_; }
    /// Fractions of the surface.
    Point fraction(Point at) const { return {at.x / width_, at.y / height_}; }

private:
    enum class Role { first, second, other };
    struct Touch {
        TouchId id;
        Role role;
    };
    std::vector<Touch>::iterator find(TouchId touch);
    Role freeRole() const;
    void finish(TouchId touch, double time, bool cancelled);
    void tellEnded(Role role, double time);

    std::vector<Touch> fingers_; // the oldest first
    double lastTime_ = 0.0;      // of the latest report
    double width_ = 1.0, height_ = 1.0;
};

} // namespace zephyra
