#include "plugin/lv2/window/host_writes.h"

#include "plugin/lv2/ports.h"

#include <algorithm>
#include <utility>

namespace zephyra {

HostWrites::HostWrites(Lv2Plugin& plugin, LV2UI_Write_Function write, LV2UI_Controller controller,
                       const LV2UI_Touch* touch)
    : plugin_(plugin), write_(write), controller_(controller), touch_(touch) {
    plugin_.instance().setGestureListener(
        [this](const AUParameterAutomationEvent& event) { hear(event); });
}

HostWrites::~HostWrites() {
    plugin_.instance().setGestureListener({});
}

void HostWrites::hear(const AUParameterAutomationEvent& event) {
    if (event.address >= kParameterCount) return;
    plugin_.handMoved(event.address);
    const auto port = static_cast<std::uint32_t>(event.address);
    const Write moved{.port = port,
                      .value = portValue(pluginParameters()[event.address], event.value)};
    using enum AUParameterAutomationEventType;
    const std::lock_guard lock(mutex_);
    if (event.eventType == touch) waiting_.push_back({.port = port, .value = {}, .grabbed = true});
    // Of many moves between two idle calls the host needs the last one.
    if (!waiting_.empty() && waiting_.back().port == port && waiting_.back().value)
        waiting_.back() = moved;
    else
        waiting_.push_back(moved);
    if (event.eventType == release) waiting_.push_back({.port = port, .value = {}});
}

void HostWrites::deliver() {
    std::vector<Write> writes;
    {
        const std::lock_guard lock(mutex_);
        writes = std::exchange(waiting_, {});
    }
    for (const Write& one : writes) {
        if (one.value)
            write_(controller_, one.port, sizeof(float), 0, &*one.value);
        else if (touch_)
            touch_->touch(touch_->handle, one.port, one.grabbed);
    }
}

} // namespace zephyra
