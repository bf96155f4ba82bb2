#include "pictures/cairo/grain_lane.h"

#include "pictures/cairo/picture_axes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

namespace zephyra {

namespace {

constexpr Colour kScanColour = Colour::hex(0xFFFFFF, 0.72);
constexpr Colour kBorderColour = Colour::hex(0xFFFFFF, 0.30);
constexpr Colour kOutside = theme::background.faded(0.6);
constexpr double kThinnest = 0.9, kThickest = 2.6; // pixels, half a grain's height at its middle
constexpr double kShortest = 2.2;                  // pixels, so that every grain can be seen

// From two octaves down to two up; the middle is the source's own pitch.
constexpr std::array<Colour, 7> kPitchStops = {
    Colour::hex(0xE23D6D), Colour::hex(0xF4665A), Colour::hex(0xFF9B54), Colour::hex(0xFFE3A3),
    Colour::hex(0x6FE0B0), Colour::hex(0x3FB6E8), Colour::hex(0x7C7BFF),
};

/// The map's scales.
struct Scales {
    const Box& box;
    double seconds;

    double x(double time) const noexcept { return box.x + time / seconds * box.width; }
    double y(double position) const noexcept { return box.bottom() - position * box.height; }
};

double loudest(const GrainMap& map) {
    double level = 1e-9;
    for (const GrainMark& grain : map.grains) level = std::max(level, std::abs(grain.level));
    return level;
}

/// Opacity at which grains that lie over each other can still be told apart.
double grainOpacity(const GrainMap& map, const Scales& scales) {
    double covered = 0;
    for (const GrainMark& grain : map.grains)
        covered += std::max(grain.length / map.seconds * scales.box.width, kShortest);
    const double depth = covered / scales.box.width; // grains over each pixel of time
    return std::clamp(2.3 / std::sqrt(1 + depth), 0.16, 0.95);
}

/// A lens from one point to the other, as thick as the grain is loud, like its envelope.
void drawLens(Canvas& canvas, double x1, double y1, double x2, double y2, double thickness) {
    const double length = std::max(std::hypot(x2 - x1, y2 - y1), kShortest);
    const double angle = std::atan2(y2 - y1, x2 - x1);
    const double bulge = thickness * 4 / 3; // a cubic reaches three quarters of its controls
    cairo_t* const context = canvas.context();
    cairo_save(context);
    cairo_translate(context, x1, y1);
    cairo_rotate(context, angle);
    cairo_move_to(context, 0, 0);
    cairo_curve_to(context, length * 0.3, -bulge, length * 0.7, -bulge, length, 0);
    cairo_curve_to(context, length * 0.7, bulge, length * 0.3, bulge, 0, 0);
    cairo_fill(context);
    cairo_restore(context);
}

void drawGrain(Canvas& canvas, const Scales& scales, const GrainMark& grain, SourceEdge edge,
               double thickness) {
    const SourceRounds rounds = roundsOf(grain, edge);
    for (int round = rounds.first; round <= rounds.last; ++round)
        drawLens(canvas, scales.x(grain.start), scales.y(grain.from - round),
                 scales.x(grain.start + grain.length), scales.y(grain.to - round), thickness);
}

void drawSoundingGrains(Canvas& canvas, const Scales& scales, const GrainMap& map) {
    const double range = pitchRange(map), opacity = grainOpacity(map, scales), top = loudest(map);
    cairo_set_operator(canvas.context(), CAIRO_OPERATOR_SCREEN);
    for (const GrainMark& grain : map.grains) {
        if (grain.dropped) continue;
        const double loudness = std::sqrt(std::abs(grain.level) / top);
        canvas.setColour(pitchColour(grain.semitones, range).faded(opacity * loudness));
        drawGrain(canvas, scales, grain, map.edge, kThinnest + (kThickest - kThinnest) * loudness);
    }
    cairo_set_operator(canvas.context(), CAIRO_OPERATOR_OVER);
}

void drawDroppedGrains(Canvas& canvas, const Scales& scales, const GrainMap& map) {
    constexpr double kArm = 2.2, kRoomPerMark = 2; // pixels
    const auto dropped = static_cast<double>(std::count_if(
        map.grains.begin(), map.grains.end(), [](auto& grain) { return grain.dropped; }));
    const double crowd = std::max(dropped * kRoomPerMark / scales.box.width, 1.0);
    const Colour colour = theme::warning.faded(0.8 / std::sqrt(crowd));
    for (const GrainMark& grain : map.grains) {
        if (!grain.dropped) continue;
        const double x = scales.x(grain.start), y = scales.y(grain.from);
        canvas.line(x - kArm, y - kArm, x + kArm, y + kArm, colour, 1.1);
        canvas.line(x - kArm, y + kArm, x + kArm, y - kArm, colour, 1.1);
    }
}

void addLines(Canvas& canvas, const Scales& scales, const std::vector<ScanLine>& lines) {
    for (const auto& [from, to] : lines) {
        cairo_move_to(canvas.context(), scales.x(from.seconds), scales.y(from.position));
        cairo_line_to(canvas.context(), scales.x(to.seconds), scales.y(to.position));
    }
}

/// Its motion as a line, its jumps as dots; a band where it wraps faster than can be shown.
void drawScan(Canvas& canvas, const Scales& scales, const GrainMap& map) {
    constexpr double kWidth = 1.1;
    const ScanWay way = scanWay(map.scan, map.seconds / scales.box.width);
    for (const ScanBand& band : way.bands) {
        const double top = scales.y(band.high), height = scales.y(band.low) - top;
        canvas.fill({scales.x(band.from), top, scales.x(band.to) - scales.x(band.from),
                     std::max(height, kWidth)},
                    kScanColour.faded(height > kWidth ? 0.25 : 1));
    }
    canvas.setColour(kScanColour);
    cairo_set_line_width(canvas.context(), kWidth);
    addLines(canvas, scales, way.lines);
    cairo_stroke(canvas.context());

    const double dots[] = {1, 4};
    canvas.setColour(kScanColour.faded(0.6));
    cairo_set_line_width(canvas.context(), 1);
    cairo_set_dash(canvas.context(), dots, 2, 0);
    addLines(canvas, scales, way.jumps);
    cairo_stroke(canvas.context());
    cairo_set_dash(canvas.context(), nullptr, 0, 0);
}

/// Darkens what is not scanned, and the time in which no grain starts.
void drawShades(Canvas& canvas, const Scales& scales, const GrainMap& map) {
    const Box& box = scales.box;
    if (map.edge == SourceEdge::wraps) {
        canvas.fill({box.x, box.y, box.width, (1 - map.high) * box.height}, kOutside);
        canvas.fill({box.x, scales.y(map.low), box.width, map.low * box.height}, kOutside);
    }
    if (map.playSeconds >= map.seconds) return;
    const double x = scales.x(map.playSeconds);
    canvas.fill({x, box.y, box.right() - x, box.height}, kOutside);
    canvas.line(x, box.y, x, box.bottom(), kBorderColour);
    const TextStyle style = {.colour = theme::faintText, .size = theme::tickSize};
    const std::string tail = "echo's tail";
    if (canvas.textWidth(tail, style) + 12 < box.right() - x)
        canvas.text(x + 6, box.bottom() - 8, tail, style);
}

} // namespace

Colour pitchColour(double semitones, double range) {
    return blend(kPitchStops, (semitones / range + 1) / 2);
}

void drawGrainMap(Canvas& canvas, const Box& box, const GrainMap& map) {
    const Scales scales{box, map.seconds};
    canvas.clip(box);
    drawShades(canvas, scales, map);
    drawDroppedGrains(canvas, scales, map);
    drawSoundingGrains(canvas, scales, map);
    drawScan(canvas, scales, map);
    canvas.resetClip();
}

void drawPans(Canvas& canvas, const Box& box, const GrainMap& map) {
    constexpr double kInset = 5; // pixels from the lane's edge to a grain at one side
    const Scales scales{box, map.seconds};
    const double range = pitchRange(map), opacity = grainOpacity(map, scales), top = loudest(map);
    canvas.clip(box);
    cairo_set_operator(canvas.context(), CAIRO_OPERATOR_SCREEN);
    for (const GrainMark& grain : map.grains) {
        if (grain.dropped) continue;
        const double y = box.y + box.height / 2 + grain.pan * (box.height / 2 - kInset);
        const double loudness = std::sqrt(std::abs(grain.level) / top);
        canvas.setColour(pitchColour(grain.semitones, range).faded(opacity * loudness));
        drawLens(canvas, scales.x(grain.start), y, scales.x(grain.start + grain.length), y,
                 kThinnest + (kThickest - kThinnest) * loudness);
    }
    cairo_set_operator(canvas.context(), CAIRO_OPERATOR_OVER);
    canvas.resetClip();
}

void drawPitchLegend(Canvas& canvas, const Box& box, double range) {
    const auto colourAt = [range](double share) {
        return pitchColour(range * (2 * share - 1), range);
    };
    drawColourLegend(canvas, box, colourAt, pitchTicks(range), "pitch (semitones)");
}

} // namespace zephyra
