// GestureRelay: hands gestures to one listener outside MAIN, until that is taken away.
#pragma once

#include "hosting/gesture_filter.h"
#include "platform/threads/run_loop.h"

#include <memory>

namespace zephyra {

/// HOST unless said otherwise, and not inside a Scope of the run loop.
class GestureRelay {
public:
    /// Both must outlive it.
    GestureRelay(AUParameterTree& tree, RunLoop& loop) : tree_(tree), loop_(loop) {}
    ~GestureRelay() { setListener({}); }
    GestureRelay(const GestureRelay&) = delete;
    GestureRelay& operator=(const GestureRelay&) = delete;

    /// From now on listener, which may be empty, hears the gestures that begin. The one before
    /// hears nothing any more when this returns; a call of it that is under way is waited for,
    /// unless it is itself what calls this.
    void setListener(GestureFilter::Forward listener);

private:
    struct Listener;
    AUParameterTree& tree_;
    RunLoop& loop_;
    std::unique_ptr<GestureFilter> filter_; // MAIN
    std::shared_ptr<Listener> listener_;    // MAIN
};

} // namespace zephyra
