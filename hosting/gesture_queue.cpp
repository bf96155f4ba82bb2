#include "hosting/gesture_queue.h"

#include <algorithm>

namespace zephyra {

void GestureQueue::add(const AUParameterAutomationEvent& event) {
    const auto last = std::find_if(waiting_.rbegin(), waiting_.rend(),
                                   [&](const auto& e) { return e.address == event.address; });
    constexpr auto kValue = AUParameterAutomationEventType::value;
    if (event.eventType == kValue && last != waiting_.rend() && last->eventType == kValue)
        *last = event;
    else
        waiting_.push_back(event);
}

} // namespace zephyra
