// GestureListener: hears what hands do to the controls of an instance, while it lives.
#pragma once

#include "hosting/gesture_filter.h"
#include "platform/threads/run_loop.h"

#include <memory>

namespace zephyra {

class HostedInstance;

/// Any number of them hear at the same time, each for itself. HOST, not inside a Scope of the run
/// loop.
class GestureListener {
public:
    /// forward gets the gestures that begin from now on, buttons included, as touch, values and
    /// release; modulation makes none, nor does MIDI, which a host has already. It is called
    /// outside MAIN on any thread but RENDER. system, which is connected, outlives this.
    GestureListener(HostedInstance& system, GestureFilter::Forward forward);
    /// forward is called no more when this returns; a call that is under way is waited for, unless
    /// it is itself what destroys this.
    ~GestureListener();
    GestureListener(const GestureListener&) = delete;
    GestureListener& operator=(const GestureListener&) = delete;

private:
    struct Call;
    RunLoop& loop_;
    const std::shared_ptr<Call> call_; // what is to be called outside MAIN keeps it
    std::unique_ptr<GestureFilter> filter_;
};

} // namespace zephyra
