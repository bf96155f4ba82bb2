// drawTimeAxis and drawUprightAxis: the scales around a box, and the legends of colours.
#pragma once

#include "pictures/axis_ticks.h"
#include "pictures/cairo/picture_canvas.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

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

/// A bar of colours in box from share 0 at its bottom to 1 at its top, labelled at its right.
void drawColourLegend(Canvas& canvas, const Box& box,
                      const std::function<Colour(double share)>& colourAt,
                      const std::vector<Tick>& ticks, const std::string& name);

} // namespace zephyra
