#include "controls/control.h"

#include <algorithm>

namespace zephyra {

void Control::addTarget(const void* target, std::string name, ControlEvents events, Action action) {
    if (events == 0 || !action) return;
    for (Target& entry : targets_)
        if (entry.target == target && entry.name == name && entry.events == events) {
            entry.action = std::move(action);
            return;
        }
    targets_.push_back({target, std::move(name), events, std::move(action), nextNumber_++});
}

void Control::removeTarget(const void* target, std::string_view name, ControlEvents events) {
    for (Target& entry : targets_)
        if (entry.target == target && (name.empty() || entry.name == name)) entry.events &= ~events;
    std::erase_if(targets_, [](const Target& entry) { return entry.events == 0; });
}

void Control::sendActionsForControlEvents(ControlEvents events) {
    // Actions may change targets_, so nothing of it is held on to while one is called.
    std::vector<std::uint64_t> numbers;
    for (const Target& entry : targets_)
        if ((entry.events & events) != 0) numbers.push_back(entry.number);
    const ControlEvents before = std::exchange(sending_, sending_ | events);
    for (const std::uint64_t number : numbers) {
        const auto found = std::find_if(targets_.begin(), targets_.end(), [&](const Target& e) {
            return e.number == number && (e.events & events) != 0;
        });
        if (found == targets_.end()) continue;
        const Action action = found->action;
        action(*this);
    }
    sending_ = before;
}

void Control::sendEventValueChanged() {
    if (!suppressesEvents) sendActionsForControlEvents(control_event::valueChanged);
}

bool Control::hasTarget(const void* target, std::string_view name) const {
    return std::any_of(targets_.begin(), targets_.end(), [&](const Target& entry) {
        return entry.target == target && entry.name == name;
    });
}

void Button::trigger() {
    triggered_ = true;
    sendActionsForControlEvents(control_event::touchUpInside);
    triggered_ = false;
}

} // namespace zephyra
