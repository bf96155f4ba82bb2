// GestureFilter: forwards parameter gestures to a host, and keeps modulation's changes from it.
#pragma once

#include "platform/audio_unit/audio_unit_parameters.h"

#include <functional>
#include <memory>

namespace zephyra {

/// Watches a tree and forwards each parameter's gesture as hosts automate it: the touch (begin),
/// the values until the release, and the release (end). Values outside a gesture, as modulation
/// sends them, are for the tree alone, and so is a touch inside a gesture. Made and destroyed MAIN;
/// the tree must outlive it.
class GestureFilter {
public:
    using Forward = std::function<void(const AUParameterAutomationEvent&)>;

    /// forward runs on the thread that sets, which may be MAIN: what it calls the host for goes
    /// through RunLoop::callOutside. An empty one is told nothing.
    GestureFilter(AUParameterTree& tree, Forward forward);
    ~GestureFilter();
    GestureFilter(const GestureFilter&) = delete;
    GestureFilter& operator=(const GestureFilter&) = delete;

private:
    struct State;
    AUParameterTree& tree_;
    std::shared_ptr<State> state_; // a call under way keeps it
    AUParameterObserverToken token_;
};

} // namespace zephyra
