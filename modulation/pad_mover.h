// PadMover: moves a pad's point up and down.
#pragma once

#include "controls/pad.h"
#include "modulation/control_mover.h"

namespace zephyra {

/// MAIN.
class PadMover final : public PlaceMover {
public:
    explicit PadMover(MOK_PAD& pad) : pad_(pad) {}

    float position() const override { return pad_.yValue(); }
    bool isHeld() const override { return pad_.touchState != 0; }

protected:
    void moveTo(float place) override {
        pad_.setYValue(place);
        pad_.sendEventValueChanged();
    }

private:
    MOK_PAD& pad_;
};

} // namespace zephyra
