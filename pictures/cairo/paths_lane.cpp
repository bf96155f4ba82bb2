#include "pictures/cairo/paths_lane.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

namespace zephyra {

namespace {

constexpr double kGap = 4, kInset = 4; // pixels: between rows, and from a row's edge to its path
constexpr double kSmallest = 28;       // pixels of the row below which nothing can be read
constexpr double kLabelGap = 9;        // pixels between names and rows

constexpr std::array<Colour, 8> kColours = {
    Colour::hex(0x6FE0B0), Colour::hex(0xFFB454), Colour::hex(0x5FB6F0), Colour::hex(0xF4729A),
    Colour::hex(0xC3E06B), Colour::hex(0xB693FF), Colour::hex(0xFFE08A), Colour::hex(0x5FD9E0),
};

/// One row with the gap below it.
double rowPitch(std::size_t count) {
    return std::clamp(240.0 / static_cast<double>(count), kSmallest + kGap, 64.0 + kGap);
}

/// Upright places of a path's linear values in a row; one that never moved lies in the middle.
struct RowScale {
    RowScale(const Box& row, const ControlPath& path)
        : low(path.lowest()), span(path.highest() - path.lowest()), bottom(row.bottom() - kInset),
          height(row.height - 2 * kInset) {}
    double y(float value) const {
        return bottom - (span > 0 ? double{value - low} / double{span} : 0.5) * height;
    }

    float low, span;
    double bottom, height;
};

/// A line through all that was seen; many values within a column become an upright stroke.
void tracePath(Canvas& canvas, const Box& row, const ControlPath& path) {
    const RowScale scale(row, path);
    cairo_t* const context = canvas.context();
    const double step = row.width / static_cast<double>(path.columns.size());
    double last = scale.y(path.columns.front().first);
    cairo_move_to(context, row.x, last);
    for (std::size_t i = 0; i < path.columns.size(); ++i) {
        const ControlPath::Column& column = path.columns[i];
        if (column.count == 0) continue;
        const double x = row.x + (static_cast<double>(i) + 0.5) * step;
        for (const float value : {column.first, column.low, column.high, column.last})
            cairo_line_to(context, x, last = scale.y(value));
    }
    cairo_line_to(context, row.right(), last);
}

void drawLabels(Canvas& canvas, const Box& row, double labelsX, const ControlPath& path,
                const Colour& colour) {
    const double right = row.x - kLabelGap, width = right - labelsX;
    const double middle = row.y + row.height / 2;
    const TextStyle name = {.colour = colour, .size = 13, .anchor = TextAnchor::right};
    const TextStyle mover = {.colour = theme::faintText, .size = 11.5, .anchor = TextAnchor::right};
    const std::string text = controlRange(path.moved.control).name;
    canvas.text(right, middle - 2, canvas.fitted(text, width, name), name);
    canvas.text(right, middle + 12, canvas.fitted(path.moved.mover, width, mover), mover);

    const TextStyle value = {.colour = theme::faintText, .size = 11.5};
    const std::string low = path.valueText(path.lowest()), high = path.valueText(path.highest());
    const double x = row.right() + kLabelGap;
    if (low == high) {
        canvas.text(x, middle + 4, low, value);
        return;
    }
    canvas.text(x, row.y + 10, high, value);
    canvas.text(x, row.bottom() - 2, low, value);
}

} // namespace

double pathsHeight(std::size_t count) {
    return count == 0 ? 0 : std::round(rowPitch(count) * static_cast<double>(count) - kGap);
}

void drawPaths(Canvas& canvas, const Box& box, double labelsX,
               const std::vector<ControlPath>& paths, const std::vector<Tick>& grid) {
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const double pitch = (box.height + kGap) / static_cast<double>(paths.size());
        const double top = std::round(box.y + pitch * static_cast<double>(i));
        const Box row = {box.x, top, box.width, std::round(pitch - kGap)};
        const Colour& colour = kColours[i % kColours.size()];
        canvas.fill(row, theme::panel);
        drawTimeGrid(canvas, row, grid);
        canvas.clip(row);
        canvas.setColour(colour);
        cairo_set_line_width(canvas.context(), 1.4);
        tracePath(canvas, row, paths[i]);
        cairo_stroke(canvas.context());
        canvas.resetClip();
        canvas.outline(row, theme::frame);
        drawLabels(canvas, row, labelsX, paths[i], colour);
    }
}

} // namespace zephyra
