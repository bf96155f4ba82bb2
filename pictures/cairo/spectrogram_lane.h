// drawSpectrogram: the frequencies of a signal over time, with their level as colour.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/spectrum_columns.h"

namespace zephyra {

/// The decibels that a spectrogram's colours go from and to.
struct LevelRange {
    double low, high;
};

/// 80 dB up to the loudest place of spectrum, rounded up to tens.
LevelRange levelRange(const SpectrumColumns& spectrum);

/// Draws one column and one row per pixel of box; spectrum must have as many.
void drawSpectrogram(Canvas& canvas, const Box& box, const SpectrumColumns& spectrum,
                     const LevelRange& range);

/// The scale of level colours in box, labelled at its right.
void drawLevelLegend(Canvas& canvas, const Box& box, const LevelRange& range);

} // namespace zephyra
