// ScreenLayout: where everything of a window stands, in whole pixels, for its size and zoom.
#pragma once

#include <array>
#include <cmath>

namespace zephyra {

/// Whole physical pixels.
struct Box {
    int x = 0, y = 0, width = 0, height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    int centreX() const { return x + width / 2; }
    int centreY() const { return y + height / 2; }
    bool contains(double px, double py) const {
        return px >= x && px < right() && py >= y && py < bottom();
    }
    bool operator==(const Box&) const = default;
};

/// Within a step all heights but the stage's stay, so that the stage takes every spare pixel.
enum class LayoutStep { compact, regular, large };

/// What has a size of its own in each step, in units: pixels at a zoom of 1.
struct LayoutMeasures {
    int top, path, strip, foot, meter, ruler; ///< heights; meter is a width
    int leastColumn, leastGap, margin;        ///< of the path
    int knob, spread;                         ///< diameters
    /// From the path's top: the signal line, the big knobs' centre and baseline, the small ones'.
    int line, knobCentre, knobName, spreadCentre, spreadName;
    int playSize, buttonSize;
    // Letters, in pixels; the first four are medium.
    int presetText, tempoText, numberText, spreadText, sectionText, nameText, unitText;
};

/// The sections of the path, in the order of the signal.
enum class Section { grains, pitch, space, scan, echo, ring, output };
inline constexpr int kSections = 7, kColumns = 11;

/// Plain data, computed by layOut. Areas tile the window without gaps.
struct ScreenLayout {
    static constexpr int kLeastWidth = 800, kLeastHeight = 520; ///< units
    static constexpr int kStartWidth = 1100, kStartHeight = 700;
    static constexpr double kLeastZoom = 0.75, kMostZoom = 2.5;

    LayoutStep step = LayoutStep::regular;
    double scale = 1.0; ///< pixels a unit
    LayoutMeasures measures{};
    Box window, top, stage, ruler, meter, path, spectrum, scope, foot;
    std::array<Box, kColumns> columns;   ///< of the path, its whole height
    std::array<Box, kSections> sections; ///< the columns of each and the gap behind

    /// So many units as pixels.
    int px(double units) const { return static_cast<int>(std::lround(units * scale)); }
    bool operator==(const ScreenLayout& other) const {
        return window == other.window && scale == other.scale;
    }
};

/// The first column of a section, and how many it has.
struct SectionColumns {
    int first, count;
};
SectionColumns columnsOf(Section section);

const LayoutMeasures& measuresOf(LayoutStep step);

/// For a window of so many pixels. A zoom that does not fit is made smaller, down to the least one,
/// at which the window cuts the rest off; one that is not finite counts as 1. Above 1800 x 1100
/// units the large step grows with the window.
ScreenLayout layOut(int width, int height, double zoom);

} // namespace zephyra
