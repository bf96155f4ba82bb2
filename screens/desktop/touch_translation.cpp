#if defined(__linux__)

#include "screens/desktop/touch_translation.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace zephyra {

namespace {

std::optional<TouchPhase> phaseOf(int type) {
    switch (type) {
    case XI_TouchBegin:
        return TouchPhase::began;
    case XI_TouchUpdate:
        return TouchPhase::moved;
    case XI_TouchEnd:
        return TouchPhase::ended;
    default:
        return std::nullopt;
    }
}

/// Numbers of fingers are the server's, those of devices begin at 2: none is a mouse's.
TouchId identityOf(const XIDeviceEvent& event) {
    return static_cast<TouchId>(event.sourceid) << 32 | static_cast<std::uint32_t>(event.detail);
}

} // namespace

std::vector<int> TouchTranslation::touchScreens(const XIDeviceInfo* devices, int count) {
    std::vector<int> screens;
    for (int i = 0; i < count; ++i) {
        const XIDeviceInfo& device = devices[i];
        if (!device.enabled || device.use != XISlavePointer) continue;
        for (int c = 0; c < device.num_classes; ++c) {
            if (device.classes[c]->type != XITouchClass) continue;
            const auto* const touch = reinterpret_cast<const XITouchClassInfo*>(device.classes[c]);
            if (touch->mode == XIDirectTouch) screens.push_back(device.deviceid);
        }
    }
    return screens;
}

void TouchTranslation::setScreens(std::vector<int> devices) {
    screens_ = std::move(devices);
    std::vector<TouchEvent> lost;
    std::erase_if(fingers_, [&](const auto& finger) {
        const auto& [id, at] = finger;
        if (std::find(screens_.begin(), screens_.end(), at.device) != screens_.end()) return false;
        lost.push_back({id, TouchPhase::cancelled, at.at, seconds_});
        return true;
    });
    const Sink sink = sink_; // whom it tells may destroy this
    for (const TouchEvent& event : lost) sink(event);
}

double TouchTranslation::seconds(::Time time) {
    const auto now = static_cast<std::uint32_t>(time);
    const auto passed = static_cast<std::int32_t>(now - std::exchange(lastTime_, now));
    return seconds_ += passed / 1000.0;
}

void TouchTranslation::take(const XIDeviceEvent& event) {
    const auto phase = phaseOf(event.evtype);
    if (!phase || event.event != window_ ||
        std::find(screens_.begin(), screens_.end(), event.sourceid) == screens_.end())
        return;
    const TouchEvent touch{
        identityOf(event), *phase, {event.event_x, event.event_y}, seconds(event.time)};
    if (*phase == TouchPhase::ended)
        fingers_.erase(touch.id);
    else
        fingers_[touch.id] = {event.sourceid, touch.at};
    sink_(touch);
}

} // namespace zephyra

#endif
