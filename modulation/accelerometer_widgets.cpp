#include "modulation/accelerometer_widgets.h"

#include "controls/state_keys.h"
#include "modulation/accelerometer_wrapper.h"
#include "platform/lists/property_reader.h"

namespace zephyra {

namespace {

constexpr const char* kWhere = "accelerometer"; // in findings

} // namespace

AccelerometerWidgets::AccelerometerWidgets(Instance& instance)
    : instance_(instance), timer_(instance.runLoop.addTimer(kLfoTick, [this] { tick(); })) {}

AccelerometerWidgets::~AccelerometerWidgets() {
    instance_.runLoop.cancel(timer_);
}

void AccelerometerWidgets::addWidget_forAxis(Control* control, Accelerometer::Axis axis) {
    if (!control) return;
    if (auto mover = makeMover(*control))
        wrappers_.add(std::make_shared<AccelerometerWrapper>(*control, std::move(mover), axis));
}

void AccelerometerWidgets::removeWidget(const Control* control) {
    wrappers_.remove(control);
}

void AccelerometerWidgets::removeAllWidgets() {
    wrappers_.clear();
}

WidgetWrapper* AccelerometerWidgets::getWrapperID(const Control* control) const {
    return wrappers_.find(control);
}

Accelerometer::Axis AccelerometerWidgets::axisOf(const Control* control) const {
    const AccelerometerWrapper* const wrapper = wrappers_.find(control);
    return wrapper ? wrapper->axis() : Accelerometer::Axis::x;
}

PropertyArray
AccelerometerWidgets::getState(const std::function<std::string(const Control&)>& nameOf) const {
    PropertyArray states;
    for (std::size_t i = 0; i < wrappers_.size(); ++i) {
        const AccelerometerWrapper& wrapper = wrappers_.at(i);
        PropertyDictionary state = wrapper.state();
        state[assignment_key::kName] = nameOf(*wrapper.obj());
        state[tilt_key::kAxis] = wrapper.axis() == Accelerometer::Axis::x ? 0 : 1;
        states.push_back(std::move(state));
    }
    return states;
}

StateFindings
AccelerometerWidgets::restoreState(const PropertyArray& state,
                                   const std::function<Control*(const std::string&)>& find) {
    StateFindings findings;
    removeAllWidgets();
    std::size_t bonds = 0;
    for (const PropertyValue& entry : state)
        if (const auto* const bond = entry.as<PropertyDictionary>())
            bonds += restoreBond(*bond, find, findings);
        else
            findings.push_back({kWhere,
                                std::string("an entry of type ") + entry.typeName() +
                                    " is ignored; a dictionary is needed",
                                StandIn::nothing});
    complainOfTwice(findings, bonds - wrappers_.size(), "tilt assignment(s)");
    return findings;
}

/// How many bonds were made: 1 or 0.
std::size_t
AccelerometerWidgets::restoreBond(const PropertyDictionary& bond,
                                  const std::function<Control*(const std::string&)>& find,
                                  StateFindings& findings) {
    PropertyReader reader(bond, findings, kWhere, StandIn::usual);
    const auto leaveOut = [&findings](std::string text) {
        findings.push_back({kWhere, std::move(text), StandIn::nothing});
        return std::size_t{0};
    };
    const std::string name = reader.text(assignment_key::kName).value_or("");
    const std::int64_t axis = reader.whole(tilt_key::kAxis).value_or(-1);
    if (axis != 0 && axis != 1)
        return leaveOut("\"" + name + "\" is ignored; its axis must be 0 or 1");
    Control* const control = find(name);
    addWidget_forAxis(control, axis == 0 ? Accelerometer::Axis::x : Accelerometer::Axis::y);
    WidgetWrapper* const wrapper = getWrapperID(control);
    if (!wrapper) return leaveOut("\"" + name + "\" is ignored; it must name a knob or a scan");
    wrapper->applyState(reader);
    return 1;
}

void AccelerometerWidgets::tick() {
    if (!instance_.accelerometer.isPresent()) return;
    wrappers_.forEach([this](AccelerometerWrapper& wrapper) {
        wrapper.follow(instance_.accelerometer.value(wrapper.axis()));
    });
}

} // namespace zephyra
