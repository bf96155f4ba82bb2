// showWindowMenu: a menu in the window's look.
#pragma once

#include "screens/model/screen_context.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <vector>

namespace zephyra {

/// Below box, which is in window's coordinates, with so many pixels a unit; it stays inside the
/// window, so that hosts that keep other windows in front cannot cover it. What was chosen is
/// called once it has closed, unless the window is gone by then. Message thread.
void showWindowMenu(juce::Component& window, double scale, const Box& box,
                    std::vector<MenuRow> rows);

} // namespace zephyra
