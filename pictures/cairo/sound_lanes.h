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

/// A sound's level along an upright source as a faint glow across box, so that one sees what the
/// grains over it read. At least one column.
void drawSourceGlow(Canvas& canvas, const Box& box,
                    const std::vector<WaveformColumns::Column>& columns);

/// Draws spectrum into box, a pixel in the colour of the loudest that falls on it.
void drawSpectrogram(Canvas& canvas, const Box& box, const SpectrumColumns& spectrum,
                     const LevelRange& range);

/// The scale of level colours in box, labelled at its right.
void drawLevelLegend(Canvas& canvas, const Box& box, const LevelRange& range);

} // namespace zephyra
