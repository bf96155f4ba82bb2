// TouchTarget: what follows fingers by their identities; all else is touched as by the mouse.
#pragma once

#include "screens/model/touch/touch_event.h"

#include <memory>

namespace zephyra {

/// Places are pixels from where TouchScene said that the target begins. A finger that began here
/// also ends or is cancelled here, wherever it went meanwhile, unless the target was destroyed.
/// Message thread.
class TouchTarget {
public:
    TouchTarget() = default;
    virtual ~TouchTarget() = default;
    TouchTarget(const TouchTarget&) = delete;
    TouchTarget& operator=(const TouchTarget&) = delete;

    /// False for a finger that it has no use for: that one is nobody's until it lifts.
    virtual bool touchBegan(const TouchEvent& event) = 0;
    virtual void touchMoved(const TouchEvent& event) = 0;
    /// taps: 1 for a finger that lifts where it came down, 2 for the second such one, and so on; 0
    /// for one that moved or rested.
    virtual void touchEnded(const TouchEvent& event, int taps) = 0;
    virtual void touchCancelled(const TouchEvent& event) = 0;
    /// The only finger on the window has rested here: where a mouse has its right button.
    virtual void touchRested(const TouchEvent&) {}
    /// Whether it hears of the smallest movement. Others hear of none while a finger may be
    /// tapping, and from then on as if it had come down where it left that circle.
    virtual bool followsAtOnce() const { return false; }

    /// Expires with the target.
    std::weak_ptr<TouchTarget*> watch() const noexcept { return self_; }

private:
    std::shared_ptr<TouchTarget*> self_ = std::make_shared<TouchTarget*>(this);
};

} // namespace zephyra
