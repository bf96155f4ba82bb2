// GestureQueue: what hands did to parameters, until a host can be told.
#pragma once

#include "platform/audio_unit/audio_unit_parameters.h"

#include <utility>
#include <vector>

namespace zephyra {

/// In the order of its coming, but of the values that a parameter had in a row only the last, in
/// the first one's place: a host needs no others. Guarded by its owner.
class GestureQueue {
public:
    void add(const AUParameterAutomationEvent& event);
    /// Everything, which waits no more.
    std::vector<AUParameterAutomationEvent> take() { return std::exchange(waiting_, {}); }

private:
    std::vector<AUParameterAutomationEvent> waiting_;
};

} // namespace zephyra
