// drawPaths: the ways of moved controls, a row each, over a render's time.
#pragma once

#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/picture_canvas.h"
#include "rendering/control_paths.h"

#include <cstddef>
#include <vector>

namespace zephyra {

/// Pixels that so many rows take; 0 for none. The more there are, the lower each is.
double pathsHeight(std::size_t count);

/// Draws every path into a row of box, whose width in pixels is the number of columns, from the
/// lowest value that it reached to the highest, which stand at its right. Names and movers stand
/// between labelsX and box. grid: of time.
void drawPaths(Canvas& canvas, const Box& box, double labelsX,
               const std::vector<ControlPath>& paths, const std::vector<Tick>& grid);

} // namespace zephyra
