// dropFile: what another program does that drags a file onto a window.
#pragma once

#include "tests/plugin/lv2_window/host_window.h"

namespace window_host {

/// Lets go of it at that place of the screen, after half a second above it.
void dropFile(HostWindow& window, const std::string& uri, int x, int y);

} // namespace window_host
