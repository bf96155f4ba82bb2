// AccelerometerWrapper: an axis of the device's tilt with the control it moves.
#pragma once

#include "modulation/control_mover.h"
#include "modulation/lfo.h"
#include "platform/accelerometer.h"

#include <memory>
#include <optional>
#include <utility>

namespace zephyra {

/// MAIN.
class AccelerometerWrapper final : public WidgetWrapper {
public:
    /// mover: of the control, not null.
    AccelerometerWrapper(Control& control, std::unique_ptr<ControlMover> mover,
                         Accelerometer::Axis axis)
        : WidgetWrapper(control), mover_(std::move(mover)), axis_(axis) {}

    Accelerometer::Axis axis() const { return axis_; }

    /// One tick at a tilt of -1..1. Where the tilt rests and the control has arrived, a hand can
    /// move it.
    void follow(float tilt) {
        if (mover_->isHeld()) return mover_->letGo();
        const float place = placeInRange((double{tilt} + 1.0) / 2.0, *this);
        if (arrivedAt_ == place) return;
        if (arrivedAt_) mover_->letGo();
        arrivedAt_.reset();
        if (mover_->follow(place, *this, kLfoTick)) arrivedAt_ = place;
    }

private:
    std::unique_ptr<ControlMover> mover_;
    Accelerometer::Axis axis_;
    std::optional<float> arrivedAt_; // none while under way
};

} // namespace zephyra
