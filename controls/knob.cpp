#include "controls/knob.h"

#include "controls/gravity.h"
#include "platform/notification_center.h"
#include "platform/random_source.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <any>
#include <cmath>
#include <limits>
#include <utility>

namespace zephyra {

MOK_KNOB::MOK_KNOB(std::string key) : Control(std::move(key)) {}

MOK_KNOB::~MOK_KNOB() {
    if (notifications_) notifications_->removeObserver(styleToken_);
}

void MOK_KNOB::setValue(float v) {
    if (!std::isfinite(v)) return;
    const float before = _value;
    _value = quantized(std::clamp(v, _minimumValue, _maximumValue));
    _angle = angleForValue(_value);
    if (_value != before) setNeedsDisplay();
}

void MOK_KNOB::setValue_animated(float v, bool /*animated*/) {
    setValue(v);
}

bool MOK_KNOB::setValueWithAppropriateGraphicsRefreshInterval_rangeMin_rangeMax_gravity(
    float target, float rangeMin, float rangeMax, float gravity, double seconds) {
    for (const double number :
         {double{target}, double{rangeMin}, double{rangeMax}, double{gravity}, seconds})
        if (!std::isfinite(number)) return true;
    const float held =
        std::clamp(target, std::min(rangeMin, rangeMax), std::max(rangeMin, rangeMax));
    const float to = std::clamp(held, _minimumValue, _maximumValue);
    // A knob with steps would stand still for ever if each way began at its step.
    const bool underWay = quantized(static_cast<float>(followed_)) == _value;
    const double near = kGravityNear * (double{_maximumValue} - double{_minimumValue});
    followed_ = gravityStep(underWay ? followed_ : double{_value}, double{to}, double{gravity},
                            seconds, near);
    setValue(static_cast<float>(followed_));
    return followed_ == double{to};
}

void MOK_KNOB::setRange(float minimum, float maximum) {
    if (!std::isfinite(maximum - minimum) || minimum >= maximum) return;
    _minimumValue = minimum;
    _maximumValue = maximum;
    setValue(_value);
    setNeedsDisplay(); // the same value may stand elsewhere now
}

void MOK_KNOB::setDefaultValue(float displayed) {
    if (std::isfinite(displayed)) _defaultValue = displayed;
}

float MOK_KNOB::valueNorm() const {
    return (_value - _minimumValue) / (_maximumValue - _minimumValue);
}

void MOK_KNOB::setValueNorm(float n) {
    setValue(_minimumValue + n * (_maximumValue - _minimumValue));
}

float MOK_KNOB::angleForValue(float v) const {
    return ((v - _minimumValue) / (_maximumValue - _minimumValue) - 0.5f) * 2.0f * MaxAngle;
}

float MOK_KNOB::valueForAngle(float a) const {
    return _minimumValue + (a / (2.0f * MaxAngle) + 0.5f) * (_maximumValue - _minimumValue);
}

float MOK_KNOB::clampAngle(float a) const {
    return std::max(-MaxAngle, std::min(a, MaxAngle));
}

void MOK_KNOB::genRandomic(RandomSource& random) {
    if (!isRandomizable) return;
    constexpr double kShare = 4.656613e-10; // 1 / 2^31, as far as single precision sees it
    setValueNorm(static_cast<float>((random.next32() & 0x7fffffff) * kShare));
    sendActionsForControlEvents(control_event::all);
}

void MOK_KNOB::resetsDefault() {
    if (!isDefaultResettable) return;
    applyDefault(std::max(_defaultValue, _minimumValue));
    sendActionsForControlEvents(control_event::all);
    currentColorIndex = 0;
    setNeedsDisplay();
}

void MOK_KNOB::setKnobInteractionStyle(int style) {
    if (style < kRotary || style > kDiagonal) return;
    _interactionStyle = style == kRotary && isSlider ? kHorizontal : style;
}

void MOK_KNOB::observeInteractionStyle(NotificationCenter& center) {
    if (notifications_) notifications_->removeObserver(styleToken_);
    notifications_ = &center;
    styleToken_ = center.addObserver(kInteractionStyleNotice, [this](const std::any& object) {
        if (const int* style = std::any_cast<int>(&object)) setKnobInteractionStyle(*style);
    });
}

std::string MOK_KNOB::labelText(double number) const {
    if (_precision >= 1) return formatFixed(number, _precision) + " " + _postfix;
    using Limits = std::numeric_limits<int>;
    const double held = std::clamp(number, double{Limits::min()}, double{Limits::max()});
    return std::to_string(static_cast<int>(held)) + " " + _postfix;
}

} // namespace zephyra
