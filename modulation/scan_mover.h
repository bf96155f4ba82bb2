// ScanMover: moves the scan of a stream through its sound.
#pragma once

#include "controls/scan_target.h"
#include "modulation/control_mover.h"
#include "modulation/lfo.h"

namespace zephyra {

/// MAIN.
class ScanMover final : public PlaceMover {
public:
    /// The scan stands for so long, which bridges a tick that comes late.
    static constexpr double kHold = 1.5 * kLfoTick; // seconds

    explicit ScanMover(ScanTarget& scan) : scan_(scan) {}

    float position() const override { return scan_.scanPosition(); }
    bool isHeld() const override { return scan_.isHeld(); }

protected:
    void moveTo(float place) override { scan_.driveScan(place, kHold); }

private:
    ScanTarget& scan_;
};

} // namespace zephyra
