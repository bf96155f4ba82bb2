// TouchScreen: the fingers on a window of JUCE, which reads none on Linux.
#pragma once

#include "screens/model/touch/touch_event.h"

#include <functional>
#include <memory>

namespace juce {
class ComponentPeer;
}

namespace zephyra {

/// Reads while it lives, in JUCE's loop of messages, whoever runs it: a host, a program or a thread
/// of ours. Message thread.
class TouchScreen {
public:
    /// Places are of the peer's content, in its own units; times seconds on the display's clock.
    using Sink = std::function<void(const TouchEvent&)>;

    /// Null where touches cannot be known; a display without a touch screen is listened to, since
    /// one may come. The peer may go first.
    static std::unique_ptr<TouchScreen> of(juce::ComponentPeer& peer, Sink sink);
    virtual ~TouchScreen() = default;
};

} // namespace zephyra
