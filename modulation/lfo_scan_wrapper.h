// LfoScrubWaveFormWidgetWrapper: an LFO with the scan that it moves through a stream's sound.
#pragma once

#include "modulation/lfo_widget_wrapper.h"
#include "modulation/scan_mover.h"

namespace zephyra {

/// MAIN.
class LfoScrubWaveFormWidgetWrapper final : public LfoWidgetWrapper {
public:
    LfoScrubWaveFormWidgetWrapper(ScanTarget& scan, double bpm, RandomSource& random)
        : LfoWidgetWrapper(scan, std::make_unique<ScanMover>(scan), bpm, random) {}
};

} // namespace zephyra
