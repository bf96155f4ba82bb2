// drawEnvelopes: the menu of grain envelopes on one page.
#pragma once

#include "pictures/cairo/picture_canvas.h"

namespace zephyra {

inline constexpr int kEnvelopePictureWidth = 1600, kEnvelopePictureHeight = 940; // pixels

/// Draws every entry of the menu with its name over the length of a grain on an empty canvas of
/// that size. A failure means that memory is short.
Result<void> drawEnvelopes(Canvas& canvas);

} // namespace zephyra
