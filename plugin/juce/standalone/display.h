// displayIsThere, whenDisplayBreaks: the X server, before and after JUCE talks to it.
#pragma once

#include <functional>
#include <string>

namespace zephyra {

/// Whether a window can be opened: JUCE crashes where it cannot. Message thread, before JUCE.
bool displayIsThere();

/// The server that was asked for, for messages: ":0", or empty.
std::string displayName();

/// last runs when the server is gone for good, after which the program ends with exit code 1;
/// nothing of JUCE's windows may be touched there. Message thread, once a window is open.
void whenDisplayBreaks(std::function<void()> last);

} // namespace zephyra
