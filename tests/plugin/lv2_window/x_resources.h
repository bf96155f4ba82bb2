// xResources: what a client holds of the X server.
#pragma once

#include <X11/Xlib.h>

namespace window_host {

/// Of whatever kind (windows, pixmaps, contexts, cursors ...), the client that made this window has
/// so many; -1 where the server does not count them.
long xResources(::Window window);

} // namespace window_host
