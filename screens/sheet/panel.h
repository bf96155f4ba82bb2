// drawPanel: what lies over the window, and how that steps back.
#pragma once

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

/// Dims all that is there, and draws panel on it. scale: pixels of a unit. Message thread.
void drawPanel(juce::Graphics& graphics, juce::Rectangle<int> panel, double scale);

} // namespace zephyra
