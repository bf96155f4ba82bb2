// settingsRows: what a player may choose of the window and the instance, as rows of a menu.
#pragma once

#include "screens/model/screen_context.h"

#include <vector>

namespace zephyra {

/// As it stands now; a row that is chosen sets it and calls settingsChanged where the window is
/// concerned. The context outlives the rows. Message thread.
std::vector<MenuRow> settingsRows(ScreenContext& context);

/// The zoom that the rows offer next to one, larger or smaller; the last one at the ends.
double nextZoom(double zoom, bool larger);

} // namespace zephyra
