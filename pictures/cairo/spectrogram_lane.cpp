#include "pictures/cairo/spectrogram_lane.h"

#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace zephyra {

namespace {

constexpr double kShownDecibels = 80; // below that a mix hides what there is
constexpr std::array<Colour, 6> kLevelStops = {
    Colour::hex(0x0B0E14), Colour::hex(0x1B2152), Colour::hex(0x63288A),
    Colour::hex(0xC93F73), Colour::hex(0xFB9A4B), Colour::hex(0xFFF6C9),
};

Colour levelColour(double decibels, const LevelRange& range) {
    const double share = (decibels - range.low) / (range.high - range.low);
    const double at = std::clamp(share, 0.0, 1.0) * (kLevelStops.size() - 1);
    const std::size_t stop = std::min(static_cast<std::size_t>(at), kLevelStops.size() - 2);
    return blend(kLevelStops[stop], kLevelStops[stop + 1], at - static_cast<double>(stop));
}

} // namespace

LevelRange levelRange(const SpectrumColumns& spectrum) {
    float loudest = SpectrumColumns::kSilenceDecibels;
    for (std::size_t column = 0; column < spectrum.columns(); ++column)
        for (std::size_t row = 0; row < spectrum.rows(); ++row)
            loudest = std::max(loudest, spectrum.decibels(column, row));
    const double high =
        loudest > SpectrumColumns::kSilenceDecibels ? std::ceil(loudest / 10.0) * 10 : 0.0;
    return {high - kShownDecibels, high};
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
    for (double y = 0; y < box.height; ++y) {
        const double share = 1 - (y + 0.5) / box.height;
        canvas.fill({box.x, box.y + y, box.width, 1},
                    levelColour(range.low + share * (range.high - range.low), range));
    }
    canvas.outline(box, theme::frame);
    drawUprightAxis(canvas, box, roundTicks(range.low, range.high, 4), "level (dB)",
                    AxisSide::right, GridLines::none);
}

} // namespace zephyra
