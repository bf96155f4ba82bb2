#include "controls/widget_wrapper.h"

#include "controls/fraction.h"
#include "controls/state_keys.h"

#include <algorithm>

namespace zephyra {

namespace {

using namespace wrapper_key;

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
    return {{kMinRange, minRange_}, {kMaxRange, maxRange_}, {kGravity, gravity_}};
}

void WidgetWrapper::applyState(PropertyReader& state) {
    readFraction(state, kMinRange, minRange_);
    readFraction(state, kMaxRange, maxRange_);
    readFraction(state, kGravity, gravity_);
}

} // namespace zephyra
