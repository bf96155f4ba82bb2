#include "modulation/scrub_widget_wrapper.h"

#include "controls/knob.h"
#include "controls/mok_keyboard.h"
#include "controls/pad.h"
#include "controls/state_keys.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

ScrubWidgetWrapper::ScrubWidgetWrapper(Control& control, std::unique_ptr<ControlMover> mover,
                                       bool secondFinger)
    : WidgetWrapper(control), mover_(std::move(mover)), secondFinger_(secondFinger) {}

void ScrubWidgetWrapper::setVelocity(double velocity) {
    if (std::isfinite(velocity)) velocity_ = std::clamp(velocity, kLeastVelocity, kMostVelocity);
}

PropertyDictionary ScrubWidgetWrapper::state() const {
    PropertyDictionary state = WidgetWrapper::state();
    state[wrapper_key::kVelocity] = velocity_;
    state[wrapper_key::kSecondFinger] = secondFinger_;
    return state;
}

void ScrubWidgetWrapper::applyState(PropertyReader& state) {
    WidgetWrapper::applyState(state);
    if (const auto velocity = state.real(wrapper_key::kVelocity)) setVelocity(*velocity);
    const bool second = state.boolean(wrapper_key::kSecondFinger).value_or(secondFinger_);
    if (second != std::exchange(secondFinger_, second)) stop();
}

void ScrubWidgetWrapper::begin() {
    stop();
    part_ = partOfRange(mover_->position(), *this);
    anchored_ = true;
}

void ScrubWidgetWrapper::moveBy(double up) {
    if (up == 0.0) return;
    if (mover_->isHeld()) return stop();
    if (!anchored_) begin();
    part_ = std::clamp(part_ + velocity_ * up, 0.0, 1.0);
    following_ = true;
    if (gravity() == 0.0f) follow(0.0);
}

bool ScrubWidgetWrapper::follow(double seconds) {
    if (following_ && mover_->isHeld()) stop();
    if (!following_) return false;
    following_ = false; // unless what follows says otherwise
    const bool there = mover_->follow(placeInRange(part_, *this), *this, seconds);
    return following_ = !there;
}

void ScrubWidgetWrapper::stop() {
    anchored_ = following_ = false;
    mover_->letGo();
}

ScrubKnobWidgetWrapper::ScrubKnobWidgetWrapper(MOK_KNOB& knob, bool secondFinger)
    : ScrubWidgetWrapper(knob, makeKnobMover(knob), secondFinger) {}

ScrubPadWidgetWrapper::ScrubPadWidgetWrapper(MOK_PAD& pad, bool secondFinger)
    : ScrubWidgetWrapper(pad, makePadMover(pad), secondFinger) {}

ScrubKeyboardWidgetWrapper::ScrubKeyboardWidgetWrapper(MOK_Keyboard& keyboard, bool secondFinger)
    : ScrubWidgetWrapper(keyboard, makeKeyboardMover(keyboard), secondFinger) {}

} // namespace zephyra
