// MeterBoxes and their kin: where levels stand in the meter, and all of its boxes.
#pragma once

#include "screens/model/level_meter.h"
#include "screens/model/screen_layout.h"

#include <array>
#include <string>

namespace zephyra {

/// In pixels of the meter's area. Plain data.
struct MeterBoxes {
    Box highest, unit;
    std::array<Box, 2> clips, bars;
    int scaleX = 0; ///< where numbers or ticks begin
};
MeterBoxes meterBoxes(const ScreenLayout& layout);

/// Decibels that have a number, the lowest ones nearer together than the highest.
inline constexpr std::array<int, 5> kMeterNumbers{0, -6, -12, -24, -48};

/// From the top of a bar that is so high, pixels, to a level in decibels: 0 dB at the top, -60 dB
/// at the bottom, and what is outside held to those.
int meterY(double decibels, int height);

/// A channel in pixels of its bar: what is painted, so that what is the same is painted once.
struct MeterPixels {
    int rms = 0, peak = 0, hold = 0; ///< y
    bool clipped = false;
    bool operator==(const MeterPixels&) const = default;
};
MeterPixels meterPixels(const LevelMeter::Channel& channel, const Box& bar);

/// "-2.5", "+1.0", "-inf" by the sign for infinity; with a minus as wide as a plus.
std::string meterText(double decibels);

} // namespace zephyra
