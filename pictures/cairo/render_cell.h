// drawRenderCell: a render's picture at a glance, for a place of a few hundred pixels.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/render_picture.h"

namespace zephyra {

/// Draws the grains over the source, the output's level and its spectrum into box, without a word.
/// picture is finished and was collected at least as fine. MAIN.
void drawRenderCell(Canvas& canvas, const Box& box, const RenderPicture& picture);

} // namespace zephyra
