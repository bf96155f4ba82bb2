// ControlMover: a modulation destination, one control as modulation moves it, whatever its kind.
#pragma once

#include "controls/widget_wrapper.h"

#include <memory>

namespace zephyra {

class MOK_KNOB;
class MOK_Keyboard;
class MOK_PAD;
class ScanTarget;

/// Places are fractions of the control's linear range. The control must outlive it. MAIN.
class ControlMover {
public:
    ControlMover() = default;
    virtual ~ControlMover() = default;
    ControlMover(const ControlMover&) = delete;
    ControlMover& operator=(const ControlMover&) = delete;

    virtual float position() const = 0;
    /// The same in the control's own unit, so that it comes back to the last bit.
    virtual float value() const { return position(); }
    /// The control stands there from now on; its targets are told. Nothing for what modulation
    /// reaches only through fingers.
    virtual void setValue(float /*value*/) {}
    /// Whether a hand is on the control: nothing else moves it then.
    virtual bool isHeld() const { return false; }

    /// Moves the control towards place as the bond's gravity lets it in so many seconds, and tells
    /// its targets as a hand would. True once it is there.
    virtual bool follow(float place, const WidgetWrapper& bond, double seconds) = 0;
    /// Others move the control from now on: the next way begins wherever it stands then, and what
    /// sounds only under a finger ends.
    virtual void letGo() {}
};

/// Where a source at v (0..1, else its amount) points within the bond's range.
float placeInRange(double v, const WidgetWrapper& bond);
/// Where place lies within the bond's range, 0..1; outside it the nearer end.
double partOfRange(float place, const WidgetWrapper& bond);

/// Along its linear range; sliders are knobs.
std::unique_ptr<ControlMover> makeKnobMover(MOK_KNOB& knob);
/// Through a stream's sound. The scan stands for one and a half LFO ticks, which bridges a late
/// one.
std::unique_ptr<ControlMover> makeScanMover(ScanTarget& scan);
/// Its point, up and down.
std::unique_ptr<ControlMover> makePadMover(MOK_PAD& pad);
/// Over its keys: holds one at most, from the first movement until it lets go or ends.
std::unique_ptr<ControlMover> makeKeyboardMover(MOK_Keyboard& keyboard);
/// What an LFO or the tilt moves, a knob or a scan; null for every other kind.
std::unique_ptr<ControlMover> makeMover(Control& control);

} // namespace zephyra
