#include "pictures/cairo/sound_lanes.h"

#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace zephyra {

namespace {

constexpr std::array<Colour, 6> kLevelStops = {
    Colour::hex(0x0B0E14), Colour::hex(0x1B2152), Colour::hex(0x63288A),
    Colour::hex(0xC93F73), Colour::hex(0xFB9A4B), Colour::hex(0xFFF6C9),
};

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

Colour levelColour(double decibels, const LevelRange& range) {
    return blend(kLevelStops, (decibels - range.low) / (range.high - range.low));
}

} // namespace

void drawWaveform(Canvas& canvas, const Box& box,
                  const std::vector<WaveformColumns::Column>& columns, const Colour& colour,
                  double scale, WaveformDirection direction) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const WaveformColumns::Column& column = columns[i];
        const auto along = static_cast<double>(i);
        const double low = column.low / scale, high = column.high / scale;
        drawBar(canvas, box, direction, along, low, high,
                column.tooLoud() ? theme::warning : colour.faded(0.55));
        const double level = column.rms() / scale;
        drawBar(canvas, box, direction, along, std::max(low, -level), std::min(high, level),
                colour);
    }
}

void drawSpectrogram(Canvas& canvas, const Box& box, const SpectrumColumns& spectrum,
                     const LevelRange& range) {
    for (std::size_t column = 0; column < spectrum.columns(); ++column)
        for (std::size_t row = 0; row < spectrum.rows(); ++row)
            canvas.fill({box.x + static_cast<double>(column),
                         box.bottom() - static_cast<double>(row) - 1, 1, 1},
                        levelColour(spectrum.decibels(column, row), range));
}

void drawLevelLegend(Canvas& canvas, const Box& box, const LevelRange& range) {
    const auto colourAt = [&range](double share) {
        return levelColour(range.low + share * (range.high - range.low), range);
    };
    drawColourLegend(canvas, box, colourAt, roundTicks(range.low, range.high, 4), "level (dB)");
}

} // namespace zephyra
