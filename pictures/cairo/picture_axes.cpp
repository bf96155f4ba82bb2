#include "pictures/cairo/picture_axes.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace zephyra {

namespace {

constexpr double kClockFrom = 60;  // seconds: from here on times read as on a clock
constexpr double kLabelGap = 7;    // pixels between box and labels
constexpr double kNameGap = 52;    // pixels between box and an upright axis's name
constexpr double kHalfDigit = 4.5; // half the height of a tick's digits
constexpr TextStyle kTickStyle = {.colour = theme::faintText, .size = theme::tickSize};

/// The smallest of 1, 2 and 5 times a power of ten that is at least step.
double roundStep(double step) {
    const double power = std::pow(10.0, std::floor(std::log10(step)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= step * (1 - 1e-9)) return factor * power;
    return 10 * power;
}

/// Seconds between ticks: decimal steps below a minute, parts of minutes and hours above.
double timeStep(double least) {
    if (least <= 10) return roundStep(least);
    for (const double step : {15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0})
        if (step >= least) return step;
    return 3600 * std::ceil(least / 3600);
}

int decimalsOf(double step) {
    return std::clamp(static_cast<int>(std::ceil(-std::log10(step) - 1e-9)), 0, 9);
}

/// Moves a label so that it stays between the box's ends.
TextAnchor anchorAt(double share) {
    return share < 0.01 ? TextAnchor::left : share > 0.99 ? TextAnchor::right : TextAnchor::centre;
}

} // namespace

std::vector<Tick> roundTicks(double low, double high, int most) {
    const double step = roundStep((high - low) / most);
    std::vector<Tick> ticks;
    const double end = high + step * 1e-6;
    for (double k = std::ceil(low / step - 1e-6); k * step <= end; ++k)
        ticks.push_back(
            {(k * step - low) / (high - low), formatFixed(k * step + 0.0, decimalsOf(step))});
    return ticks;
}

std::vector<Tick> timeTicks(double seconds, int most) {
    const double step = timeStep(seconds / most);
    std::vector<Tick> ticks;
    for (int k = 0; k * step <= seconds * (1 + 1e-9); ++k)
        ticks.push_back({k * step / seconds, seconds < kClockFrom
                                                 ? formatFixed(k * step, decimalsOf(step))
                                                 : formatClock(std::llround(k * step))});
    return ticks;
}

const char* timeUnit(double seconds) {
    return seconds < kClockFrom ? "s" : "min:s";
}

std::vector<Tick> frequencyTicks(double low, double high) {
    std::vector<Tick> ticks;
    for (double power = 1; power <= high; power *= 10)
        for (const double factor : {1.0, 2.0, 5.0}) {
            const double hertz = factor * power;
            if (hertz < low || hertz > high) continue;
            const std::string label =
                hertz < 1000 ? formatNumber(hertz) : formatNumber(hertz / 1000) + "k";
            ticks.push_back({std::log(hertz / low) / std::log(high / low), label});
        }
    return ticks;
}

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

} // namespace zephyra
