#include "screens/desktop/finger_as_mouse.h"

#include "screens/draw/screen_button.h"

#include <utility>

namespace zephyra {

namespace {

using Source = juce::MouseInputSource;
using Keys = juce::ModifierKeys;

juce::Point<float> placeOf(const TouchEvent& event) {
    return juce::Point(event.at.x, event.at.y).toFloat();
}

} // namespace

void FingerAsMouse::tell(juce::Point<float> at, int buttons) {
    auto* const peer = window_.getPeer();
    if (!peer) return;
    Keys::currentModifiers = Keys::currentModifiers.withoutMouseButtons().withFlags(buttons);
    peer->handleMouseEvent(Source::InputSourceType::mouse,
                           at * peer->getComponent().getDesktopScaleFactor(),
                           Keys::currentModifiers, Source::defaultPressure,
                           Source::defaultOrientation, juce::Time::currentTimeMillis());
}

/// A finger that is gone hovers over nothing.
void FingerAsMouse::leave() {
    tell(Source::offscreenMousePos, 0);
}

bool FingerAsMouse::touchBegan(const TouchEvent& event) {
    if (isDown_ || juce::Desktop::getInstance().getMainMouseSource().isDragging()) return false;
    isDown_ = presses_ = true;
    tell(placeOf(event), 0);
    tell(placeOf(event), Keys::leftButtonModifier);
    return true;
}

void FingerAsMouse::touchMoved(const TouchEvent& event) {
    if (presses_) tell(placeOf(event), Keys::leftButtonModifier);
}

void FingerAsMouse::touchEnded(const TouchEvent& event, int) {
    isDown_ = false;
    if (!std::exchange(presses_, false)) return;
    tell(placeOf(event), 0);
    leave();
}

/// Let go elsewhere, it has pressed nothing.
void FingerAsMouse::touchCancelled(const TouchEvent&) {
    isDown_ = false;
    if (!std::exchange(presses_, false)) return;
    leave();
}

void FingerAsMouse::touchRested(const TouchEvent& event) {
    const auto* const button = dynamic_cast<ScreenButton*>(window_.getComponentAt(placeOf(event)));
    if (!presses_ || (button && !button->menuAsked)) return; // it can only be pressed
    touchCancelled(event);
    isDown_ = true;
    tell(placeOf(event), 0);
    tell(placeOf(event), Keys::rightButtonModifier);
    tell(placeOf(event), 0);
    leave();
}

} // namespace zephyra
