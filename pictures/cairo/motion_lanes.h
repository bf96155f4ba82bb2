// drawNotes and drawPaths: the notes that a render heard and the controls that moved, over its
// time.
#pragma once

#include "pictures/axis_ticks.h"
#include "pictures/cairo/picture_canvas.h"
#include "pictures/control_path.h"
#include "pictures/note_mark.h"

#include <cstddef>
#include <vector>

namespace zephyra {

/// Pixels that the lane of such notes takes; 0 for none.
double notesHeight(const std::vector<NoteMark>& notes);

/// Draws the notes, at least one, across box, high ones at the top, with names where there is room.
/// seconds: of box.
void drawNotes(Canvas& canvas, const Box& box, const std::vector<NoteMark>& notes, double seconds,
               const std::vector<Tick>& grid);

/// Pixels that so many rows take; 0 for none. The more there are, the lower each is.
double pathsHeight(std::size_t count);

/// Draws every path into a row of box, whose width in pixels is the number of columns, from the
/// lowest value that it reached to the highest, which stand at its right. Names and movers stand
/// between labelsX and box. grid: of time.
void drawPaths(Canvas& canvas, const Box& box, double labelsX,
               const std::vector<ControlPath>& paths, const std::vector<Tick>& grid);

} // namespace zephyra
