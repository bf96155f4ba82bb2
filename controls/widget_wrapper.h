// WidgetWrapper: one modulation routing (a bond), from a source to the control that it moves.
#pragma once

#include "controls/control.h"
#include "platform/lists/property_list.h"
#include "platform/lists/property_reader.h"

namespace zephyra {

/// Its depth is the range that the source sweeps; its smoothing is the gravity with which the
/// control follows. The control must outlive it. MAIN.
class WidgetWrapper {
public:
    explicit WidgetWrapper(Control& control) : obj_(control) {}
    virtual ~WidgetWrapper() = default;
    WidgetWrapper(const WidgetWrapper&) = delete;
    WidgetWrapper& operator=(const WidgetWrapper&) = delete;

    Control* obj() const noexcept { return &obj_; }

    /// The ends of the sweep as fractions of the control's linear range; the first may lie above
    /// the second. Held to 0..1; what is not finite is refused.
    void setMinRange(float fraction);
    void setMaxRange(float fraction);
    float minRange() const noexcept { return minRange_; }
    float maxRange() const noexcept { return maxRange_; }

    /// 0: the control jumps to where the source points; towards 1 it follows ever more slowly. Held
    /// to 0..1; what is not finite is refused.
    void setGravity(float gravity);
    float gravity() const noexcept { return gravity_; }

    /// "MinRange", "MaxRange", "Gravity" as reals, and what the source adds.
    virtual PropertyDictionary state() const;
    /// Reads the same keys; missing ones and wrong types keep what is there.
    virtual void applyState(PropertyReader& state);

private:
    Control& obj_;
    float minRange_ = 0.0f, maxRange_ = 1.0f, gravity_ = 0.0f;
};

} // namespace zephyra
