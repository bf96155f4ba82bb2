#include "pictures/cairo/sound_lanes.h"

#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <array>
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

/// Those of count that fall on place n of so many; at least one.
struct Share {
    std::size_t first, end;
};

Share share(std::size_t n, std::size_t places, std::size_t count) {
    const std::size_t first = n * count / places;
    return {first, std::max((n + 1) * count / places, first + 1)};
}

double loudest(const SpectrumColumns& spectrum, const Share& columns, const Share& rows) {
    float most = SpectrumColumns::kSilenceDecibels;
    for (std::size_t column = columns.first; column < columns.end; ++column)
        for (std::size_t row = rows.first; row < rows.end; ++row)
            most = std::max(most, spectrum.decibels(column, row));
    return double{most};
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

void drawSourceGlow(Canvas& canvas, const Box& box,
                    const std::vector<WaveformColumns::Column>& columns) {
    constexpr double kBrightest = 0.2;
    double loudest = 1e-9;
    for (const WaveformColumns::Column& column : columns) loudest = std::max(loudest, column.rms());
    const double height = box.height / static_cast<double>(columns.size());
    for (std::size_t row = 0; row < columns.size(); ++row)
        canvas.fill(
            {box.x, box.bottom() - static_cast<double>(row + 1) * height, box.width, height},
            theme::source.faded(kBrightest * columns[row].rms() / loudest));
}

void drawSpectrogram(Canvas& canvas, const Box& box, const SpectrumColumns& spectrum,
                     const LevelRange& range) {
    const auto width = static_cast<std::size_t>(box.width);
    const auto height = static_cast<std::size_t>(box.height);
    for (std::size_t x = 0; x < width; ++x)
        for (std::size_t y = 0; y < height; ++y)
            canvas.fill(
                {box.x + static_cast<double>(x), box.bottom() - static_cast<double>(y) - 1, 1, 1},
                levelColour(loudest(spectrum, share(x, width, spectrum.columns()),
                                    share(y, height, spectrum.rows())),
                            range));
}

void drawLevelLegend(Canvas& canvas, const Box& box, const LevelRange& range) {
    const auto colourAt = [&range](double share) {
        return levelColour(range.low + share * (range.high - range.low), range);
    };
    drawColourLegend(canvas, box, colourAt, roundTicks(range.low, range.high, 4), "level (dB)");
}

} // namespace zephyra
