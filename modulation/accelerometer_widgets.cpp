#include "modulation/accelerometer_widgets.h"

#include "modulation/accelerometer_wrapper.h"
#include "platform/lists/property_reader.h"

namespace zephyra {

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
        state["name"] = nameOf(*wrapper.obj());
        state["axis"] = wrapper.axis() == Accelerometer::Axis::x ? 0 : 1;
        states.push_back(std::move(state));
    }
    return states;
}

void AccelerometerWidgets::restoreState(const PropertyArray& state,
                                        const std::function<Control*(const std::string&)>& find) {
    removeAllWidgets();
    for (const PropertyValue& entry : state)
        if (const auto* const bond = entry.as<PropertyDictionary>())
            restoreBond(*bond, find);
        else
            instance_.log.write(std::string("accelerometer: an entry of type ") + entry.typeName() +
                                " is ignored; a dictionary is needed");
}

void AccelerometerWidgets::restoreBond(const PropertyDictionary& bond,
                                       const std::function<Control*(const std::string&)>& find) {
    PropertyReader reader(bond, "accelerometer");
    const std::string name = reader.text("name").value_or("");
    const std::int64_t axis = reader.whole("axis").value_or(-1);
    if (axis != 0 && axis != 1)
        return instance_.log.write("accelerometer: \"" + name +
                                   "\" is ignored; its axis must be 0 or 1");
    Control* const control = find(name);
    addWidget_forAxis(control, axis == 0 ? Accelerometer::Axis::x : Accelerometer::Axis::y);
    if (WidgetWrapper* const wrapper = getWrapperID(control))
        wrapper->applyState(reader);
    else
        instance_.log.write("accelerometer: \"" + name +
                            "\" is ignored; it must name a knob or a scan");
}

void AccelerometerWidgets::tick() {
    if (!instance_.accelerometer.isPresent()) return;
    wrappers_.forEach([this](AccelerometerWrapper& wrapper) {
        wrapper.follow(instance_.accelerometer.value(wrapper.axis()));
    });
}

} // namespace zephyra
