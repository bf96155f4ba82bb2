#include "controls/curved_knobs.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

float bendInRange(float v, float min, float max, double exponent) noexcept {
    const float span = max - min;
    const float norm = std::clamp((v - min) / span, 0.0f, 1.0f);
    return min + span * static_cast<float>(std::pow(double{norm}, exponent));
}

CurvedKnob::CurvedKnob(std::string key, float stepness) : MOK_KNOB(std::move(key)) {
    setStepness(stepness);
}

void CurvedKnob::setStepness(float exponent) {
    if (!std::isfinite(exponent) || exponent <= 0.0f) return;
    stepness_ = exponent;
    setNeedsDisplay();
}

float CurvedKnob::bentValue(double exponent) const {
    return bendInRange(value(), minimumValue(), maximumValue(), exponent);
}

void CurvedKnob::setBentValue(float v, double exponent) {
    // Bending would take an infinity for the range's end.
    if (std::isfinite(v)) setValue(bendInRange(v, minimumValue(), maximumValue(), exponent));
}

MOK_SLIDER_EXP::MOK_SLIDER_EXP(std::string key, float stepness)
    : MOK_KNOB_EXP(std::move(key), stepness) {
    isSlider = true;
    _interactionStyle = kHorizontal;
}

} // namespace zephyra
