// useWindowLook: the window's colours and letters for what JUCE draws by itself.
#pragma once

namespace zephyra {

/// For pickers of files, the choice of devices and scroll bars, in all windows of the process that
/// are of this copy of JUCE, a host's not. Again is harmless. Message thread.
void useWindowLook();

} // namespace zephyra
