// Tick and the axes: where a picture's scales are labelled, and how they are drawn.
#pragma once

#include "pictures/cairo/picture_canvas.h"

#include <string>
#include <vector>

namespace zephyra {

/// A labelled place on a scale; an empty label is a grid line only.
struct Tick {
    double at; ///< 0 to 1 along the scale
    std::string label;
};

/// Ticks at round numbers (1, 2 or 5 times a power of ten) of a scale from low to high, at most
/// about `most`. high must be above low.
std::vector<Tick> roundTicks(double low, double high, int most);

/// Ticks of a time scale from 0 to seconds: round seconds, from a minute on "m:ss".
std::vector<Tick> timeTicks(double seconds, int most);

/// The unit of those labels: "s", or "min:s".
const char* timeUnit(double seconds);

/// Ticks at 1, 2 and 5 times the powers of ten of a logarithmic scale in Hz, labelled "200", "1k".
std::vector<Tick> frequencyTicks(double low, double high);

/// Where an axis stands at its box.
enum class AxisSide { left, right };
enum class GridLines { drawn, none };

/// Labels under box, from left to right, with name (and unit) below them; grid lines across box.
void drawTimeAxis(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks,
                  const std::string& name);

/// Vertical grid lines only, where another box carries the labels.
void drawTimeGrid(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks);

/// Labels beside box, from its bottom to its top. name (and unit) stands upright beyond them.
void drawUprightAxis(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks,
                     const std::string& name, AxisSide side = AxisSide::left,
                     GridLines grid = GridLines::drawn);

} // namespace zephyra
