// ControlMover: how modulation moves one control, whatever kind it is.
#pragma once

#include "controls/widget_wrapper.h"

#include <memory>
#include <optional>

namespace zephyra {

/// Places are fractions of the control's linear range. The control must outlive it. MAIN.
class ControlMover {
public:
    ControlMover() = default;
    virtual ~ControlMover() = default;
    ControlMover(const ControlMover&) = delete;
    ControlMover& operator=(const ControlMover&) = delete;

    virtual float position() const = 0;
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

/// For controls that know nothing of gravity: follows by itself and sets the place reached.
class PlaceMover : public ControlMover {
public:
    bool follow(float place, const WidgetWrapper& bond, double seconds) override;
    void letGo() override { followed_.reset(); }

protected:
    virtual void moveTo(float place) = 0;

private:
    std::optional<double> followed_; // while under way
};

/// For a knob (or slider) and a scan target; null for every other kind.
std::unique_ptr<ControlMover> makeMover(Control& control);

} // namespace zephyra
