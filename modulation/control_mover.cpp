#include "modulation/control_mover.h"

#include "controls/gravity.h"
#include "modulation/knob_mover.h"
#include "modulation/scan_mover.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

float placeInRange(double v, const WidgetWrapper& bond) {
    const double min = double{bond.minRange()}, max = double{bond.maxRange()};
    return static_cast<float>(min + std::abs(v) * (max - min));
}

double partOfRange(float place, const WidgetWrapper& bond) {
    const double min = double{bond.minRange()}, max = double{bond.maxRange()};
    if (min == max) return 0.0;
    return std::clamp((double{place} - min) / (max - min), 0.0, 1.0);
}

bool PlaceMover::follow(float place, const WidgetWrapper& bond, double seconds) {
    const double reached = gravityStep(followed_.value_or(double{position()}), double{place},
                                       double{bond.gravity()}, seconds, kGravityNear);
    followed_ = reached;
    moveTo(static_cast<float>(reached)); // whoever hears of it may let go
    return reached == double{place};
}

std::unique_ptr<ControlMover> makeMover(Control& control) {
    if (auto* const knob = dynamic_cast<MOK_KNOB*>(&control))
        return std::make_unique<KnobMover>(*knob);
    if (auto* const scan = dynamic_cast<ScanTarget*>(&control))
        return std::make_unique<ScanMover>(*scan);
    return nullptr;
}

} // namespace zephyra
