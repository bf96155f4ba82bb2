// drawSwitchPill: a switch that is on or off, as it looks everywhere in the window.
#pragma once

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

/// What a pill shows.
struct SwitchPill {
    bool isOn = false, isHovered = false;
};

/// Fills box. Message thread.
void drawSwitchPill(juce::Graphics& graphics, juce::Rectangle<float> box, const SwitchPill& pill);

} // namespace zephyra
