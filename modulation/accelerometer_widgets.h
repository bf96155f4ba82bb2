// AccelerometerWidgets: the controls that the device's tilt moves.
#pragma once

#include "modulation/wrapper_list.h"
#include "platform/instance.h"
#include "platform/lists/state_finding.h"

#include <cstddef>
#include <functional>
#include <string>

namespace zephyra {

class AccelerometerWrapper;

/// A control follows one axis: -1 is the range's first end, 1 the second. Nothing moves while the
/// device has no accelerometer. Controls must outlive it or be removed. MAIN.
class AccelerometerWidgets {
public:
    /// Reads the accelerometer 32 times a second; instance must outlive this.
    explicit AccelerometerWidgets(Instance& instance);
    ~AccelerometerWidgets();
    AccelerometerWidgets(const AccelerometerWidgets&) = delete;
    AccelerometerWidgets& operator=(const AccelerometerWidgets&) = delete;

    /// A bond of the control that was there goes first. Knobs and scan targets can be moved; others
    /// and null are ignored.
    void addWidget_forAxis(Control* control, Accelerometer::Axis axis);
    void removeWidget(const Control* control);
    void removeAllWidgets();
    /// Null when the control is not there.
    WidgetWrapper* getWrapperID(const Control* control) const;
    Accelerometer::Axis axisOf(const Control* control) const; ///< x when it is not there
    std::size_t count() const { return wrappers_.size(); }

    /// A dictionary per control: "name", "axis" (0 x, 1 y), "MinRange", "MaxRange", "Gravity".
    /// nameOf gives a control's identity.
    PropertyArray getState(const std::function<std::string(const Control&)>& nameOf) const;
    /// Replaces everything by what state says, of a control's bonds by the last; find gives the
    /// control of an identity, or null.
    /// Answers with what could not be taken.
    StateFindings restoreState(const PropertyArray& state,
                               const std::function<Control*(const std::string&)>& find);

private:
    std::size_t restoreBond(const PropertyDictionary& bond,
                            const std::function<Control*(const std::string&)>& find,
                            StateFindings& findings);
    void tick();

    Instance& instance_;
    RunLoop::Token timer_;
    WrapperList<AccelerometerWrapper> wrappers_;
};

} // namespace zephyra
