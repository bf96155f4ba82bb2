#include "pictures/cairo/waveform_lane.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kThinnest = 0.7; // pixels, so that silence is a line

/// A bar from low to high (shares of full deflection, -1 to 1) at one pixel along the lane.
void drawBar(Canvas& canvas, const Box& box, WaveformDirection direction, double along, double low,
             double high, const Colour& colour) {
    low = std::max(low, -1.0);
    high = std::min(high, 1.0);
    if (direction == WaveformDirection::rightwards) {
        const double half = box.height / 2, middle = box.y + half;
        const double height = std::max((high - low) * half, kThinnest);
        canvas.fill({box.x + along, middle - (high + low) / 2 * half - height / 2, 1, height},
                    colour);
    } else {
        const double half = box.width / 2, middle = box.x + half;
        const double width = std::max((high - low) * half, kThinnest);
        canvas.fill(
            {middle + (high + low) / 2 * half - width / 2, box.bottom() - along - 1, width, 1},
            colour);
    }
}

} // namespace

void drawWaveform(Canvas& canvas, const Box& box,
                  const std::vector<WaveformColumns::Column>& columns, const Colour& colour,
                  double scale, WaveformDirection direction) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const WaveformColumns::Column& column = columns[i];
        const auto along = static_cast<double>(i);
        const double low = column.low / scale, high = column.high / scale;
        const bool over = std::max(std::abs(column.low), std::abs(column.high)) > 1.0f;
        drawBar(canvas, box, direction, along, low, high,
                over ? theme::warning : colour.faded(0.55));
        const double level = column.rms() / scale;
        drawBar(canvas, box, direction, along, std::max(low, -level), std::min(high, level),
                colour);
    }
}

} // namespace zephyra
