// drawEnvelopes: the menu of grain envelopes on one page.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/envelope_curves.h"

#include <vector>

namespace zephyra {

inline constexpr int kEnvelopePageWidth = 1600, kEnvelopePageHeight = 940; // pixels

/// Draws up to twelve curves, each with its name over the length of a grain, on an empty canvas of
/// that size.
void drawEnvelopes(Canvas& canvas, const std::vector<EnvelopeCurve>& curves);

} // namespace zephyra
