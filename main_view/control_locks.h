// ControlLocks: which controls random settings leave alone.
#pragma once

#include "controls/control.h"
#include "platform/lists/property_list.h"
#include "platform/lists/property_reader.h"
#include "stream/control_ranges.h"

#include <functional>
#include <utility>

namespace zephyra {

/// A player locks controls; that is kept in sessions, not in presets, and shows in
/// Control::isRandomizable. MAIN.
class ControlLocks {
public:
    /// control: of an id, null for none; what it gives outlives this.
    explicit ControlLocks(std::function<Control*(ControlId)> control)
        : control_(std::move(control)) {}

    bool isLocked(ControlId id) const;
    /// Nothing happens for an id without a control.
    void setLocked(ControlId id, bool locked);
    /// Nothing is locked any more.
    void clear();

    /// Adds the channels of what is locked, if anything is.
    void save(PropertyDictionary& state) const;
    /// Takes them back; a missing key keeps what is locked, channels that are not there go.
    void restore(PropertyReader& state);

private:
    std::function<Control*(ControlId)> control_;
};

} // namespace zephyra
