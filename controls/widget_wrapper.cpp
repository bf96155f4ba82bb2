#include "controls/widget_wrapper.h"

#include "controls/fraction.h"

#include <algorithm>

namespace zephyra {

namespace {

void readFraction(PropertyReader& state, const char* key, float& fraction) {
    if (const auto value = state.real(key))
        fraction = static_cast<float>(std::clamp(*value, 0.0, 1.0));
}

} // namespace

void WidgetWrapper::setMinRange(float fraction) {
    setFraction(minRange_, fraction);
}

void WidgetWrapper::setMaxRange(float fraction) {
    setFraction(maxRange_, fraction);
}

void WidgetWrapper::setGravity(float gravity) {
    setFraction(gravity_, gravity);
}

PropertyDictionary WidgetWrapper::state() const {
    return {{"MinRange", minRange_}, {"MaxRange", maxRange_}, {"Gravity", gravity_}};
}

void WidgetWrapper::applyState(PropertyReader& state) {
    readFraction(state, "MinRange", minRange_);
    readFraction(state, "MaxRange", maxRange_);
    readFraction(state, "Gravity", gravity_);
}

} // namespace zephyra
