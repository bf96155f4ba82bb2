#include "modulation/knob_mover.h"

namespace zephyra {

float KnobMover::valueAt(float place) const {
    return knob_.minimumValue() + place * (knob_.maximumValue() - knob_.minimumValue());
}

bool KnobMover::follow(float place, const WidgetWrapper& bond, double seconds) {
    const bool there =
        knob_.setValueWithAppropriateGraphicsRefreshInterval_rangeMin_rangeMax_gravity(
            valueAt(place), valueAt(bond.minRange()), valueAt(bond.maxRange()), bond.gravity(),
            seconds);
    knob_.sendEventValueChanged();
    return there;
}

} // namespace zephyra
