// ScanTarget: the area that shows a stream's sound, as modulation sees and moves it.
#pragma once

#include "controls/control.h"

namespace zephyra {

/// channel: the stream's suffix. MAIN.
class ScanTarget : public Control {
public:
    using Control::Control;

    /// Where the scan stands, a fraction of the sound.
    virtual float scanPosition() const = 0;

    /// Moves the scan to a fraction of the sound and lets it stand there for so many seconds, so
    /// that its own speed does not carry it away between two ticks. Ignored while a hand, or a stop
    /// that fades, holds the scan, for what is not finite and, but for 0 seconds, while a take
    /// plays: whoever begins to drive the scan ends the take first.
    virtual void driveScan(float position, double seconds) = 0;

    /// Whether a hand holds the scan; nothing else moves it then.
    virtual bool isHeld() const = 0;
};

} // namespace zephyra
