#include "hosting/gesture_filter.h"

#include <mutex>
#include <set>
#include <utility>

namespace zephyra {

struct GestureFilter::State {
    explicit State(Forward to) : forward(std::move(to)) {}

    void see(const AUParameterAutomationEvent& event) {
        if (belongsToGesture(event)) forward(event);
    }

    bool belongsToGesture(const AUParameterAutomationEvent& event) {
        const std::lock_guard lock(mutex);
        switch (event.eventType) {
        case AUParameterAutomationEventType::touch:
            return touched.insert(event.address).second;
        case AUParameterAutomationEventType::release:
            return touched.erase(event.address) > 0;
        case AUParameterAutomationEventType::value:
            break;
        }
        return touched.contains(event.address);
    }

    const Forward forward;
    std::mutex mutex; // guards touched
    std::set<AUParameterAddress> touched;
};

GestureFilter::GestureFilter(AUParameterTree& tree, Forward forward)
    : tree_(tree), state_(std::make_shared<State>(std::move(forward))),
      token_(state_->forward ? tree.tokenByAddingParameterAutomationObserver(
                                   [state = state_](const AUParameterAutomationEvent& event) {
                                       state->see(event);
                                   })
                             : 0) {}

GestureFilter::~GestureFilter() {
    tree_.removeParameterObserver(token_);
}

} // namespace zephyra
