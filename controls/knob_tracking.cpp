// The touches of MOK_KNOB.

#include "controls/knob.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephyra {

/// Where a drag to p turns the knob.
float MOK_KNOB::angleForPosition(Point p) {
    if (isSlider) _interactionStyle = kHorizontal;
    const double right = p.x - _touchOrigin.x;
    const double up = _touchOrigin.y - p.y;
    double distance = 0.0;
    if (_interactionStyle == kHorizontal) distance = right;
    if (_interactionStyle == kVertical) distance = up;
    if (_interactionStyle == kDiagonal) distance = right + up;
    return clampAngle(static_cast<float>(distance) * _scalingFactor + _angle);
}

float MOK_KNOB::valueForPosition(Point p) {
    return valueForAngle(angleForPosition(p));
}

std::optional<float> MOK_KNOB::angleBetweenCenterAndPoint(Point p) const {
    const double right = p.x - center_.x;
    const double up = center_.y - p.y;
    const double squared = right * right + up * up;
    if (squared < double{MinDistanceSquared} || squared == 0.0) return std::nullopt;
    return static_cast<float>(std::atan2(right, up) * (180.0 / std::numbers::pi));
}

/// Where a finger at p holds the knob. The angle jumps by a whole turn at the bottom: a finger that
/// passes there has left the range at one end, and the knob stays at that end until it returns.
std::optional<float> MOK_KNOB::rotaryAngle(Point p) {
    const auto touch = angleBetweenCenterAndPoint(p);
    if (!touch) return std::nullopt;
    const float last = angleBetweenCenterAndPoint(_touchOrigin).value_or(*touch);
    if (last - *touch > 180.0f) beyond_ = std::min(beyond_ + 1, 1);
    if (*touch - last > 180.0f) beyond_ = std::max(beyond_ - 1, -1);
    return beyond_ == 0 ? clampAngle(*touch) : static_cast<float>(beyond_) * MaxAngle;
}

/// Whether the value changed.
bool MOK_KNOB::moveTo(Point p) {
    if (!isFinite(p)) return false;
    const bool rotary = _interactionStyle == kRotary && !isSlider;
    const std::optional<float> angle = rotary ? rotaryAngle(p) : angleForPosition(p);
    if (!angle || !std::isfinite(*angle)) return false;
    // From here on the next touch counts, also beyond an end: turning back then moves at once.
    _touchOrigin = p;
    if (*angle == _angle) return false; // converting back could round to a neighbouring value
    const float before = _value;
    setValue(valueForAngle(*angle));
    _angle = *angle; // not quantized as the value is, so that short drags add up
    return _value != before;
}

void MOK_KNOB::handleTouch(Point p) {
    const bool changed = moveTo(p);
    setNeedsDisplay();
    if (!changed) return;
    heldBack_ = !_continuous;
    if (_continuous) sendEventValueChanged();
}

void MOK_KNOB::tellHeldBack() {
    if (!heldBack_) return;
    heldBack_ = false;
    sendEventValueChanged();
}

void MOK_KNOB::beginTracking(Point p) {
    if (!userInteractionEnabled || !isFinite(p)) return;
    tracking_ = true;
    _touchOrigin = p;
    _angle = angleForValue(_value); // MaxAngle may have changed since
    beyond_ = 0;
    setNeedsDisplay();
    sendActionsForControlEvents(control_event::touchDown);
}

void MOK_KNOB::continueTracking(Point p) {
    if (tracking_ && userInteractionEnabled) handleTouch(p);
}

void MOK_KNOB::endTracking(Point p) {
    if (!tracking_) return;
    if (!userInteractionEnabled) return cancelTracking();
    if (p != _touchOrigin) handleTouch(p); // a tap turns nothing
    tellHeldBack();
    tracking_ = false;
    setNeedsDisplay();
    sendActionsForControlEvents(control_event::touchUpInside);
}

void MOK_KNOB::cancelTracking() {
    if (!tracking_) return;
    tellHeldBack(); // what people see is what sounds
    tracking_ = false;
    setNeedsDisplay();
    sendActionsForControlEvents(control_event::touchCancel);
}

} // namespace zephyra
