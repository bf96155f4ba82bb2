#include "screens/model/screen_layout.h"

#include <algorithm>
#include <cstddef>

namespace zephyra {

namespace {

constexpr std::array<LayoutMeasures, 3> kMeasures{{
    {.top = 44,
     .path = 160,
     .strip = 36,
     .foot = 28,
     .meter = 44,
     .ruler = 20,
     .leastColumn = 64,
     .leastGap = 12,
     .margin = 12,
     .knob = 46,
     .spread = 36,
     .line = 18,
     .knobCentre = 56,
     .knobName = 91,
     .spreadCentre = 116,
     .spreadName = 150,
     .playSize = 34,
     .buttonSize = 28,
     .presetText = 16,
     .tempoText = 14,
     .numberText = 14,
     .spreadText = 12,
     .sectionText = 12,
     .nameText = 11,
     .unitText = 11},
    {.top = 56,
     .path = 200,
     .strip = 56,
     .foot = 36,
     .meter = 60,
     .ruler = 20,
     .leastColumn = 64,
     .leastGap = 24,
     .margin = 16,
     .knob = 56,
     .spread = 40,
     .line = 24,
     .knobCentre = 76,
     .knobName = 120,
     .spreadCentre = 152,
     .spreadName = 188,
     .playSize = 40,
     .buttonSize = 32,
     .presetText = 20,
     .tempoText = 18,
     .numberText = 16,
     .spreadText = 13,
     .sectionText = 13,
     .nameText = 12,
     .unitText = 11},
    {.top = 80,
     .path = 288,
     .strip = 96,
     .foot = 48,
     .meter = 84,
     .ruler = 28,
     .leastColumn = 96,
     .leastGap = 40,
     .margin = 32,
     .knob = 84,
     .spread = 58,
     .line = 36,
     .knobCentre = 109,
     .knobName = 174,
     .spreadCentre = 224,
     .spreadName = 274,
     .playSize = 56,
     .buttonSize = 44,
     .presetText = 28,
     .tempoText = 25,
     .numberText = 24,
     .spreadText = 18,
     .sectionText = 17,
     .nameText = 16,
     .unitText = 14},
}};

constexpr std::array<SectionColumns, kSections> kSectionColumns{
    {{0, 3}, {3, 1}, {4, 1}, {5, 1}, {6, 2}, {8, 1}, {9, 2}}};

constexpr int kRegularWidth = 960, kRegularHeight = 620;
constexpr int kLargeWidth = 1400, kLargeHeight = 900;
constexpr int kMostWidth = 1800, kMostHeight = 1100; // units; beyond, all grows
constexpr double kSpectrumShare = 0.66;
constexpr int kColumnGrid = 4;

LayoutStep stepFor(double width, double height) {
    if (width < kRegularWidth || height < kRegularHeight) return LayoutStep::compact;
    return width >= kLargeWidth && height >= kLargeHeight ? LayoutStep::large : LayoutStep::regular;
}

// Columns are the widest multiple of the grid that fits; what is left over goes into the gaps.
void layOutPath(ScreenLayout& layout) {
    const LayoutMeasures& of = layout.measures;
    constexpr int gaps = kSections - 1;
    const double units = layout.window.width / layout.scale;
    const int column = std::max(
        of.leastColumn, static_cast<int>((units - 2 * of.margin - gaps * of.leastGap) / kColumns) /
                            kColumnGrid * kColumnGrid);
    const double gap = (units - 2 * of.margin - kColumns * column) / gaps;
    double x = of.margin;
    for (std::size_t section = 0; section < kSections; ++section) {
        const auto [first, count] = kSectionColumns[section];
        const int left = layout.px(x);
        for (int i = 0; i < count; ++i, x += column)
            layout.columns[static_cast<std::size_t>(first + i)] = {
                layout.px(x), layout.path.y, layout.px(x + column) - layout.px(x),
                layout.path.height};
        x += gap;
        const int right = section == gaps ? layout.px(x - gap) : layout.px(x);
        layout.sections[section] = {left, layout.path.y, right - left, layout.path.height};
    }
}

} // namespace

SectionColumns columnsOf(Section section) {
    return kSectionColumns[static_cast<std::size_t>(section)];
}

const LayoutMeasures& measuresOf(LayoutStep step) {
    return kMeasures[static_cast<std::size_t>(step)];
}

constexpr double kZoomStep = 0.25; // of one that is made to fit, so that pixels come out even

ScreenLayout layOut(int width, int height, double zoom) {
    ScreenLayout layout;
    const double fits = std::min(double{1} * width / ScreenLayout::kLeastWidth,
                                 double{1} * height / ScreenLayout::kLeastHeight);
    const double whole = std::floor(fits / kZoomStep) * kZoomStep;
    layout.scale = std::clamp(std::min(std::isfinite(zoom) ? zoom : 1.0, whole),
                              ScreenLayout::kLeastZoom, ScreenLayout::kMostZoom);
    width = std::max(width, layout.px(ScreenLayout::kLeastWidth));
    height = std::max(height, layout.px(ScreenLayout::kLeastHeight));
    layout.step = stepFor(width / layout.scale, height / layout.scale);
    layout.measures = measuresOf(layout.step);
    if (layout.step == LayoutStep::large)
        layout.scale = std::max(layout.scale, std::min(static_cast<double>(width) / kMostWidth,
                                                       static_cast<double>(height) / kMostHeight));
    layout.window = {0, 0, width, height};

    const LayoutMeasures& of = layout.measures;
    const int top = layout.px(of.top), path = layout.px(of.path), strip = layout.px(of.strip);
    const int foot = layout.px(of.foot), meter = layout.px(of.meter), ruler = layout.px(of.ruler);
    const int middle = height - top - path - strip - foot;
    layout.top = {0, 0, width, top};
    layout.stage = {0, top, width - meter, middle - ruler};
    layout.ruler = {0, layout.stage.bottom(), width - meter, ruler};
    layout.meter = {width - meter, top, meter, middle};
    layout.path = {0, layout.ruler.bottom(), width, path};
    const int split = static_cast<int>(width * kSpectrumShare);
    layout.spectrum = {0, layout.path.bottom(), split, strip};
    layout.scope = {split, layout.path.bottom(), width - split, strip};
    layout.foot = {0, layout.spectrum.bottom(), width, foot};
    layOutPath(layout);
    return layout;
}

} // namespace zephyra
