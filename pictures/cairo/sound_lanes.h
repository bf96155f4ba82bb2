// drawWaveform and drawSpectrogram: a sound's levels and frequencies over its time.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/spectrum_columns.h"
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

/// Draws one column and one row per pixel of box; spectrum must have as many.
void drawSpectrogram(Canvas& canvas, const Box& box, const SpectrumColumns& spectrum,
                     const LevelRange& range);

/// The scale of level colours in box, labelled at its right.
void drawLevelLegend(Canvas& canvas, const Box& box, const LevelRange& range);

} // namespace zephyra
