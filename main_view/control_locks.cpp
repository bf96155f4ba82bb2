#include "main_view/control_locks.h"

#include "controls/state_keys.h"

#include <algorithm>
#include <string>
#include <utility>

namespace zephyra {

bool ControlLocks::isLocked(ControlId id) const {
    const Control* const control = control_(id);
    return control && !control->isRandomizable;
}

void ControlLocks::setLocked(ControlId id, bool locked) {
    Control* const control = control_(id);
    if (!control || control->isRandomizable == !locked) return;
    control->isRandomizable = !locked;
    control->setNeedsDisplay();
}

void ControlLocks::clear() {
    for (const ControlRange& range : controlRanges()) setLocked(range.id, false);
}

void ControlLocks::save(PropertyDictionary& state) const {
    PropertyArray channels;
    for (const ControlRange& range : controlRanges())
        if (isLocked(range.id)) channels.emplace_back(control_(range.id)->channel);
    if (!channels.empty()) state.insert_or_assign(state_key::kLocked, std::move(channels));
}

void ControlLocks::restore(PropertyReader& state) {
    const PropertyArray* const channels = state.array(state_key::kLocked);
    if (!channels) return;
    for (const ControlRange& range : controlRanges()) {
        const Control* const control = control_(range.id);
        if (!control) continue;
        setLocked(range.id, std::ranges::any_of(*channels, [control](const PropertyValue& channel) {
                      const auto* const name = channel.as<std::string>();
                      return name && *name == control->channel;
                  }));
    }
}

} // namespace zephyra
