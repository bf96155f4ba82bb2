#include "plugin/lv2/window/host_writes.h"

#include "plugin/lv2/ports.h"

#include <vector>

namespace zephyra {

HostWrites::HostWrites(Lv2Plugin& plugin, LV2UI_Write_Function write, LV2UI_Controller controller,
                       const LV2UI_Touch* touch)
    : plugin_(plugin), write_(write), controller_(controller), touch_(touch),
      gestures_(plugin.instance().system(),
                [this](const AUParameterAutomationEvent& event) { hear(event); }) {}

void HostWrites::hear(const AUParameterAutomationEvent& event) {
    if (event.address >= kParameterCount) return;
    plugin_.handMoved(event.address);
    const std::lock_guard lock(mutex_);
    waiting_.add(event);
}

void HostWrites::deliver() {
    std::vector<AUParameterAutomationEvent> events;
    {
        const std::lock_guard lock(mutex_);
        events = waiting_.take();
    }
    for (const AUParameterAutomationEvent& event : events) tell(event);
}

void HostWrites::tell(const AUParameterAutomationEvent& event) const {
    using Type = AUParameterAutomationEventType;
    const auto port = static_cast<std::uint32_t>(event.address);
    const float value = portValue(pluginParameters()[event.address], event.value);
    if (touch_ && event.eventType == Type::touch) touch_->touch(touch_->handle, port, true);
    write_(controller_, port, sizeof value, 0, &value);
    if (touch_ && event.eventType == Type::release) touch_->touch(touch_->handle, port, false);
}

} // namespace zephyra
