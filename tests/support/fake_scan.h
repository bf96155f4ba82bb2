// FakeScan: a scan that stands where it is put, and says so.
#pragma once

#include "controls/scan_target.h"

namespace zephyra {

struct FakeScan final : ScanTarget {
    using ScanTarget::ScanTarget;
    float position = 0.5f;
    double stood = 0.0; ///< seconds that the last drive asked for
    bool held = false;  ///< by a hand

    float scanPosition() const override { return position; }
    void driveScan(float to, double seconds) override { position = to, stood = seconds; }
    bool isHeld() const override { return held; }
};

} // namespace zephyra
