// drawWaveform: a signal's extremes and level over time, along either axis.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/waveform_columns.h"

#include <vector>

namespace zephyra {

enum class WaveformDirection {
    rightwards, ///< one column per pixel from the left, full scale at top and bottom
    upwards,    ///< one column per pixel from the bottom, full scale at left and right
};

/// Draws columns across box: the extremes faintly, the level within them brightly. scale is the
/// magnitude that reaches the box's edge; what exceeds 1 is marked as too loud for 16 bits.
void drawWaveform(Canvas& canvas, const Box& box,
                  const std::vector<WaveformColumns::Column>& columns, const Colour& colour,
                  double scale, WaveformDirection direction = WaveformDirection::rightwards);

} // namespace zephyra
