// RenderPage: a render's picture drawn on one page: source, grains, output, motion and spectrum.
#pragma once

#include "pictures/axis_ticks.h"
#include "pictures/cairo/event_lane.h"
#include "pictures/cairo/picture_canvas.h"
#include "pictures/render_picture.h"

#include <vector>

namespace zephyra {

/// MAIN.
class RenderPage {
public:
    static constexpr int kWidth = 1600; // pixels

    /// What a picture of this page is collected for: a column or row a pixel.
    static PictureGrid grid();

    /// picture is finished, was collected for grid() and outlives this.
    explicit RenderPage(const RenderPicture& picture);

    /// Pixels; the more happens and the more controls are moved, the taller the page.
    int height() const;
    /// Draws all on an empty canvas of kWidth · height().
    void draw(Canvas& canvas) const;

private:
    void drawHeader(Canvas& canvas) const;
    void drawFacts(Canvas& canvas) const;
    void drawSource(Canvas& canvas) const;
    void drawGrains(Canvas& canvas) const;
    void drawOutput(Canvas& canvas) const;
    void drawMotion(Canvas& canvas) const;
    void drawSpectrum(Canvas& canvas) const;

    const RenderPicture& picture_;
    std::vector<Tick> times_; ///< of the output
    EventLane events_;
    Box labels_, source_, map_, pans_, left_, right_, notes_, paths_, spectrum_;
};

} // namespace zephyra
