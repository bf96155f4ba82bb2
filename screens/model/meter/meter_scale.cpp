#include "screens/model/meter/meter_scale.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kLowest = 60.0; // dB below full scale
constexpr double kBend = 1.6;    // the upper decibels get more room, as ears give them

/// Units, by step.
struct MeterMeasures {
    int highest, clip, clipHigh, bar, barX, barWide, gap, scaleX, unit, below;
};
constexpr MeterMeasures kMeasures[] = {{.highest = 15,
                                        .clip = 24,
                                        .clipHigh = 3,
                                        .bar = 31,
                                        .barX = 8,
                                        .barWide = 8,
                                        .gap = 3,
                                        .scaleX = 31,
                                        .unit = 9,
                                        .below = 27},
                                       {.highest = 18,
                                        .clip = 28,
                                        .clipHigh = 4,
                                        .bar = 36,
                                        .barX = 10,
                                        .barWide = 9,
                                        .gap = 3,
                                        .scaleX = 36,
                                        .unit = 10,
                                        .below = 28},
                                       {.highest = 27,
                                        .clip = 42,
                                        .clipHigh = 6,
                                        .bar = 54,
                                        .barX = 16,
                                        .barWide = 13,
                                        .gap = 4,
                                        .scaleX = 51,
                                        .unit = 14,
                                        .below = 40}};

} // namespace

MeterBoxes meterBoxes(const ScreenLayout& layout) {
    const MeterMeasures& of = kMeasures[static_cast<std::size_t>(layout.step)];
    const auto px = [&](int units) { return layout.px(units); };
    const int width = layout.meter.width, height = layout.meter.height;
    MeterBoxes boxes;
    boxes.highest = {0, px(of.highest - 10), width, px(20)};
    boxes.unit = {0, height - px(of.unit + 10), width, px(20)};
    for (std::size_t i = 0; i < boxes.bars.size(); ++i) {
        const int x = px(of.barX + static_cast<int>(i) * (of.barWide + of.gap));
        boxes.clips[i] = {x, px(of.clip), px(of.barWide), px(of.clipHigh)};
        boxes.bars[i] = {x, px(of.bar), px(of.barWide), height - px(of.bar) - px(of.below)};
    }
    boxes.scaleX = px(of.scaleX);
    return boxes;
}

int meterY(double decibels, int height) {
    const double above = std::clamp(1.0 + decibels / kLowest, 0.0, 1.0);
    return static_cast<int>(std::lround(height * (1.0 - std::pow(above, kBend))));
}

MeterPixels meterPixels(const LevelMeter::Channel& channel, const Box& bar) {
    const auto y = [&](double decibels) { return bar.y + meterY(decibels, bar.height); };
    return {y(channel.rms), y(channel.peak), y(channel.hold), channel.clipped};
}

std::string meterText(double decibels) {
    if (!(decibels > LevelMeter::kFloor)) return "\u2212\u221e";
    const std::string digits = formatFixed(std::fabs(decibels), 1);
    if (digits == "0.0") return digits;
    return (decibels < 0.0 ? "\u2212" : "+") + digits;
}

} // namespace zephyra
