#include "hosting/gesture_listener.h"

#include "hosting/hosted_instance.h"

#include <mutex>
#include <utility>

namespace zephyra {

struct GestureListener::Call {
    explicit Call(GestureFilter::Forward to) : forward(std::move(to)) {}

    void make(const AUParameterAutomationEvent& event) {
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

GestureListener::GestureListener(HostedInstance& system, GestureFilter::Forward forward)
    : loop_(system.instance.runLoop), call_(std::make_shared<Call>(std::move(forward))) {
    const RunLoop::Scope main(loop_);
    filter_ = std::make_unique<GestureFilter>(
        *system.unit->parameterTree(),
        [&loop = loop_, call = call_](const AUParameterAutomationEvent& event) {
            loop.callOutside([call, event] { call->make(event); });
        });
}

GestureListener::~GestureListener() {
    {
        const RunLoop::Scope main(loop_);
        filter_.reset();
    }
    call_->close();
}

} // namespace zephyra
