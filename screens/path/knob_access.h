// makeKnobAccess: a knob for assistive technology.
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

namespace zephyra {

class KnobCell;

/// A slider in displayed values, with the text that is shown. Message thread; knob outlives it.
std::unique_ptr<juce::AccessibilityHandler> makeKnobAccess(KnobCell& knob);

} // namespace zephyra
