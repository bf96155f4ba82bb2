// ForwardedScrubReference: a surface's scrub widgets, kept by whoever knows how to move them.
#pragma once

#include "controls/scrub_reference.h"

namespace zephyra {

/// Hands every call on to mWidgetWrappers; nothing happens while there are none. MAIN.
class ForwardedScrubReference : public ScrubReference {
public:
    /// Null, or it outlives this.
    ScrubReference* mWidgetWrappers = nullptr;

    void addWidget_forSecondFinger(Control* control, bool secondFinger) override {
        if (mWidgetWrappers) mWidgetWrappers->addWidget_forSecondFinger(control, secondFinger);
    }
    void removeWidget(const Control* control) override {
        if (mWidgetWrappers) mWidgetWrappers->removeWidget(control);
    }
    void removeAllWidgets() override {
        if (mWidgetWrappers) mWidgetWrappers->removeAllWidgets();
    }
    WidgetWrapper* getWrapperID(const Control* control) override {
        return mWidgetWrappers ? mWidgetWrappers->getWrapperID(control) : nullptr;
    }
    PropertyDictionary getWrapperInfo(const Control* control) const override {
        return mWidgetWrappers ? mWidgetWrappers->getWrapperInfo(control) : PropertyDictionary{};
    }
    StateFindings setWrapperInfo_fromDictionary(Control* control,
                                                const PropertyDictionary& state) override {
        if (!mWidgetWrappers) return {};
        return mWidgetWrappers->setWrapperInfo_fromDictionary(control, state);
    }
    bool followsSecondFinger(const Control* control) const override {
        return mWidgetWrappers && mWidgetWrappers->followsSecondFinger(control);
    }
};

} // namespace zephyra
