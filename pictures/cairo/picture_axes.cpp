#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kLabelGap = 7;    // pixels between box and labels
constexpr double kNameGap = 52;    // pixels between box and an upright axis's name
constexpr double kHalfDigit = 4.5; // half the height of a tick's digits
constexpr TextStyle kTickStyle = {.colour = theme::faintText, .size = theme::tickSize};

/// Moves a label so that it stays between the box's ends.
TextAnchor anchorAt(double share) {
    return share < 0.01 ? TextAnchor::left : share > 0.99 ? TextAnchor::right : TextAnchor::centre;
}

} // namespace

void drawTimeGrid(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks) {
    for (const Tick& tick : ticks) {
        const double x = std::round(box.x + tick.at * box.width) + 0.5;
        if (tick.at > 0 && tick.at < 1) canvas.line(x, box.y, x, box.bottom(), theme::grid);
    }
}

void drawTimeAxis(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks,
                  const std::string& name) {
    drawTimeGrid(canvas, box, ticks);
    TextStyle style = kTickStyle;
    for (const Tick& tick : ticks) {
        style.anchor = anchorAt(tick.at);
        canvas.text(box.x + tick.at * box.width, box.bottom() + kLabelGap + 2 * kHalfDigit,
                    tick.label, style);
    }
    canvas.text(box.x + box.width / 2, box.bottom() + kLabelGap + 2 * kHalfDigit + 19, name,
                {.size = theme::tickSize, .anchor = TextAnchor::centre});
}

void drawUprightAxis(Canvas& canvas, const Box& box, const std::vector<Tick>& ticks,
                     const std::string& name, AxisSide side, GridLines grid) {
    const bool left = side == AxisSide::left;
    TextStyle style = kTickStyle;
    style.anchor = left ? TextAnchor::right : TextAnchor::left;
    const double labelX = left ? box.x - kLabelGap : box.right() + kLabelGap;
    for (const Tick& tick : ticks) {
        const double y = box.bottom() - tick.at * box.height;
        if (grid == GridLines::drawn && tick.at > 0 && tick.at < 1)
            canvas.line(box.x, std::round(y) + 0.5, box.right(), std::round(y) + 0.5, theme::grid);
        const double labelY = std::clamp(y + kHalfDigit, box.y + 2 * kHalfDigit, box.bottom());
        canvas.text(labelX, labelY, tick.label, style);
    }
    canvas.text(left ? box.x - kNameGap : box.right() + kNameGap + 2 * kHalfDigit,
                box.y + box.height / 2, name,
                {.size = theme::tickSize, .anchor = TextAnchor::centre, .turn = TextTurn::upwards});
}

void drawColourLegend(Canvas& canvas, const Box& box,
                      const std::function<Colour(double share)>& colourAt,
                      const std::vector<Tick>& ticks, const std::string& name) {
    for (double y = 0; y < box.height; ++y)
        canvas.fill({box.x, box.y + y, box.width, 1}, colourAt(1 - (y + 0.5) / box.height));
    canvas.outline(box, theme::frame);
    drawUprightAxis(canvas, box, ticks, name, AxisSide::right, GridLines::none);
}

} // namespace zephyra
