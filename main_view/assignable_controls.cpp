#include "main_view/assignable_controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zephyra {

namespace {

template <typename Value>
std::vector<Value> column(const std::vector<AssignableControl>& all,
                          Value AssignableControl::*member) {
    std::vector<Value> values;
    values.reserve(all.size());
    std::transform(all.begin(), all.end(), std::back_inserter(values),
                   [member](const AssignableControl& one) { return one.*member; });
    return values;
}

} // namespace

void AssignableControls::add(Control& control, std::string name, int color) {
    all_.push_back({&control, std::move(name), color});
}

std::string AssignableControls::nameOf(const Control& control) const {
    const auto found = std::ranges::find(all_, &control, &AssignableControl::control);
    return found == all_.end() ? std::string() : found->name;
}

std::vector<Control*> AssignableControls::getWidgetsObjForControlManager() {
    return column(all_, &AssignableControl::control);
}

std::vector<std::string> AssignableControls::getWidgetsObjNamesForControlManager() {
    return column(all_, &AssignableControl::name);
}

std::vector<int> AssignableControls::getWidgetsObjColorsForControlManager() {
    return column(all_, &AssignableControl::color);
}

} // namespace zephyra
