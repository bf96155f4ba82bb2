// switchAccess: what assistive technology finds of a control that is on or off.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>
#include <memory>

namespace zephyra {

/// Tells isOn as checked; pressing and toggling both call flip. For createAccessibilityHandler of
/// control, which outlives it. Message thread.
std::unique_ptr<juce::AccessibilityHandler> switchAccess(juce::Component& control,
                                                         std::function<bool()> isOn,
                                                         const std::function<void()>& flip);

} // namespace zephyra
