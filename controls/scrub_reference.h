// ScrubReference: what scrubbing fingers move besides the scan.
#pragma once

#include "controls/widget_wrapper.h"

namespace zephyra {

/// One per surface: the controls that follow the first finger's vertical movement, and those that
/// follow the second finger's. A null control is ignored. MAIN.
class ScrubReference {
public:
    virtual ~ScrubReference() = default;

    /// A control that cannot be moved by a finger gets nothing; one that was there already starts
    /// anew.
    virtual void addWidget_forSecondFinger(Control* control, bool secondFinger) = 0;
    virtual void removeWidget(const Control* control) = 0;
    virtual void removeAllWidgets() = 0;

    /// Null when the control is not there.
    virtual WidgetWrapper* getWrapperID(const Control* control) = 0;
    /// Empty when the control is not there.
    virtual PropertyDictionary getWrapperInfo(const Control* control) const = 0;
    /// Adds the control when it is not there; which finger it follows is one of the keys. Answers
    /// with what could not be taken.
    virtual StateFindings setWrapperInfo_fromDictionary(Control* control,
                                                        const PropertyDictionary& state) = 0;
    /// Whether the control is there and follows the second finger.
    virtual bool followsSecondFinger(const Control* control) const = 0;
};

} // namespace zephyra
