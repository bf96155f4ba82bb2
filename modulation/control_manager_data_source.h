// ControlManagerDataSource: the controls that modulation may move, as the control manager lists
// them.
#pragma once

#include "controls/control.h"
#include "controls/scrub_reference.h"

#include <string>
#include <vector>

namespace zephyra {

/// Whoever has the controls. The three lists are of one length and order, hold no nulls, and stay
/// as they are. MAIN.
class ControlManagerDataSource {
public:
    virtual ~ControlManagerDataSource() = default;
    virtual std::vector<Control*> getWidgetsObjForControlManager() = 0;
    /// Display names.
    virtual std::vector<std::string> getWidgetsObjNamesForControlManager() = 0;
    /// Colour groups: 0 dark text, 1 blue, 2 brown, 3 orange, 4 red, 5 purple, 6 magenta.
    virtual std::vector<int> getWidgetsObjColorsForControlManager() = 0;
    /// One per stream.
    virtual std::vector<ScrubReference*> getScrubReference() = 0;
};

} // namespace zephyra
