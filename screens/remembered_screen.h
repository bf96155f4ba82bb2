// makeRememberedScreen: a window's content with what the player chose of windows before.
#pragma once

#include "screens/zephyra_screen.h"

#include <memory>

namespace zephyra {

/// What is chosen in it is written to screen.plist in the user's folder of settings
/// ($XDG_CONFIG_HOME/zephyra, else ~/.config/zephyra), which all windows of all formats share; in
/// memory where there is no such folder. Message thread; plugin outlives it.
std::unique_ptr<ZephyraScreen> makeRememberedScreen(PluginInstance& plugin);

/// What was chosen last. HOST.
ScreenSettings rememberedSettings();

} // namespace zephyra
