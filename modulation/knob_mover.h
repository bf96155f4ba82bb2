// KnobMover: moves a knob or slider along its linear range.
#pragma once

#include "controls/knob.h"
#include "modulation/control_mover.h"

namespace zephyra {

/// MAIN.
class KnobMover final : public ControlMover {
public:
    explicit KnobMover(MOK_KNOB& knob) : knob_(knob) {}

    float position() const override { return knob_.valueNorm(); }
    bool isHeld() const override { return knob_.isTracking(); }
    bool follow(float place, const WidgetWrapper& bond, double seconds) override;

private:
    float valueAt(float place) const;

    MOK_KNOB& knob_;
};

} // namespace zephyra
