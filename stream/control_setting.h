// ControlSetting: a control and its new value.
#pragma once

#include "stream/control_ranges.h"

namespace zephyra {

/// value is a displayed one, within the control's range; 0 and 1 for a switch, the position of the
/// name for a choice.
struct ControlSetting {
    ControlId control;
    float value;
};

} // namespace zephyra
