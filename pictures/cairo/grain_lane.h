// drawGrainMap and pitchColour: every grain of a render over time and source, coloured by pitch.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/grain_map.h"

namespace zephyra {

/// The colour of a pitch on a scale from -range to range semitones: low ones warm, high ones cool.
Colour pitchColour(double semitones, double range);

/// Draws the map but its events into box.
void drawGrainMap(Canvas& canvas, const Box& box, const GrainMap& map);

/// Draws where each grain stands between left, at box's top, and right, in the map's time and
/// colours.
void drawPans(Canvas& canvas, const Box& box, const GrainMap& map);

/// The scale of pitch colours from -range to range in box, labelled at its right.
void drawPitchLegend(Canvas& canvas, const Box& box, double range);

} // namespace zephyra
