// HostKeys: the way of keys that a plug-in's window does not take to the host around it.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <cstdint>

namespace zephyra {

/// X gives a key to the window under the pointer alone, so that a host's shortcuts would be dead
/// there. Message thread.
class HostKeys {
public:
    /// Sends key to the window around component's; nothing where systems have ways of their own. A
    /// key that comes back from the host at once is not sent again.
    void passOn(const juce::Component& component, const juce::KeyPress& key);

private:
    juce::KeyPress last_;
    std::uint32_t lastTime_ = 0; // of JUCE's clock
};

} // namespace zephyra
