#include "hosting/gesture_relay.h"

#include <mutex>
#include <utility>

namespace zephyra {

struct GestureRelay::Listener {
    explicit Listener(GestureFilter::Forward to) : forward(std::move(to)) {}

    void hear(const AUParameterAutomationEvent& event) {
        const std::lock_guard lock(mutex);
        const GestureFilter::Forward call = forward; // which may close this
        if (call) call(event);
    }
    void close() {
        const std::lock_guard lock(mutex);
        forward = {};
    }

    std::recursive_mutex mutex; // held in a call, so that close waits for it
    GestureFilter::Forward forward;
};

void GestureRelay::setListener(GestureFilter::Forward listener) {
    auto next = listener ? std::make_shared<Listener>(std::move(listener)) : nullptr;
    std::shared_ptr<Listener> before;
    {
        const RunLoop::Scope main(loop_);
        before = std::exchange(listener_, next);
        const auto relay = [this, next](const AUParameterAutomationEvent& event) {
            loop_.callOutside([next, event] { next->hear(event); });
        };
        filter_ = next ? std::make_unique<GestureFilter>(tree_, relay) : nullptr;
    }
    if (before) before->close();
}

} // namespace zephyra
