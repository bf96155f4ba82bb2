#include "pictures/axis_ticks.h"

#include "platform/text/decibels.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kClockFrom = 60; // seconds: from here on times read as on a clock

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

std::vector<Tick> levelTicks(double scale) {
    std::vector<Tick> ticks = {{0.5, "-\u221E"}};
    for (const double decibels : {0.0, -6.0, -12.0, -24.0, -36.0}) {
        const double height = factorOf(decibels) / scale;
        if (height > 1.001 || ticks.size() > 4) continue;
        const std::string label = std::to_string(static_cast<int>(decibels));
        ticks.push_back({0.5 + height / 2, height > 0.3 ? label : ""});
        ticks.push_back({0.5 - height / 2, ""}); // the same below the middle
    }
    return ticks;
}

std::vector<Tick> pitchTicks(double range) {
    std::vector<Tick> ticks;
    for (const double share : {-1.0, -0.5, 0.0, 0.5, 1.0})
        ticks.push_back({(share + 1) / 2, formatNumber(share * range)});
    return ticks;
}

} // namespace zephyra
