// FingerAsMouse: a finger on what knows only the mouse.
#pragma once

#include "screens/model/touch/touch_target.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

/// One finger at a time, in whichever component is there: dialogs, menus and fields need not know
/// of touches. A rest is a right click, but on buttons without a menu. Places are those of the
/// window's own component. Message thread.
class FingerAsMouse final : public TouchTarget {
public:
    /// window outlives it.
    explicit FingerAsMouse(juce::Component& window) : window_(window) {}

    bool touchBegan(const TouchEvent& event) override;
    void touchMoved(const TouchEvent& event) override;
    void touchEnded(const TouchEvent& event, int taps) override;
    void touchCancelled(const TouchEvent& event) override;
    void touchRested(const TouchEvent& event) override;
    bool followsAtOnce() const override { return true; }

private:
    void tell(juce::Point<float> at, int buttons);
    void leave();

    juce::Component& window_;
    bool isDown_ = false, presses_ = false;
};

} // namespace zephyra
