// showSettingsMenu: what a player chooses about an instance and its window, as a menu.
#pragma once

#include "hosting/plugin_instance.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

namespace zephyra {

/// Opens at button and returns at once; what is chosen is set in plugin, which must outlive the
/// button. zoomChosen gets the factor of a zoom; zoom is the one that holds. JUCE's message thread.
void showSettingsMenu(PluginInstance& plugin, juce::Component& button, float zoom,
                      const std::function<void(float)>& zoomChosen);

} // namespace zephyra
