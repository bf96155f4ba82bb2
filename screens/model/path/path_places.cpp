#include "screens/model/path/path_places.h"

#include <algorithm>
#include <string_view>

namespace zephyra {

namespace {

// In units of the smallest text, so that they grow with each step.
constexpr double kAboveKnob = 9, kBelowName = 8, kAboveSpread = 3.5;
constexpr double kSwitchWidth = 22, kSwitchHeight = 12, kSyncWidth = 36, kSyncHeight = 15;
constexpr double kMostLetter = 0.62, kAfterTitle = 5; // letters of the title are less wide
// From here on, in letters of the name, full names stand well apart.
constexpr double kFullNameColumn = 6.5, kFullNamePart = 5.4;

double stepFactor(const ScreenLayout& layout) {
    return layout.measures.nameText / 12.0;
}

} // namespace

bool usesShortName(const PathCell& cell, const ScreenLayout& layout) {
    const double letters = layout.scale * layout.measures.nameText;
    if (cell.parts > 1) return placeOf(cell, layout).cell.width < kFullNamePart * letters;
    return layout.columns[1].width < kFullNameColumn * letters;
}

CellPlace placeOf(const PathCell& cell, const ScreenLayout& layout) {
    const LayoutMeasures& of = layout.measures;
    const bool big = cell.row == PathRow::big;
    const double unit = stepFactor(layout);
    const int belowLine = layout.px(of.line) + (layout.px(kSyncHeight * unit) + 1) / 2;
    const int bigTop =
        std::max(layout.px(of.knobCentre - of.knob / 2.0 - kAboveKnob * unit), belowLine);
    const int between = layout.px(std::min(
        of.knobName + kBelowName * unit, of.spreadCentre - of.spread / 2.0 - kAboveSpread * unit));
    const int end = std::min(layout.px(of.spreadName + kBelowName * unit), layout.path.height);
    const Box& column = layout.columns[static_cast<std::size_t>(cell.column)];
    CellPlace place{};
    const int top = big ? bigTop : between;
    place.cell = {column.x, top, column.width, (big ? between : end) - top};
    double diameter = big ? of.knob : of.spread;
    if (cell.parts > 1) { // several share the column and half of the gaps beside it
        const Box& section = layout.sections[static_cast<std::size_t>(cell.section)];
        const int more = (section.width - column.width) / 2;
        const int part = (column.width + 2 * more) / cell.parts;
        place.cell.x = column.x - more + cell.part * part;
        place.cell.width = part;
        diameter = of.spread;
    }
    place.centreX = place.cell.width / 2;
    place.centreY = layout.px(big ? of.knobCentre : of.spreadCentre) - top;
    place.diameter = layout.px(diameter);
    const int baseline = layout.px(big ? of.knobName : of.spreadName) - top;
    place.nameHeight = layout.px(of.nameText * 1.3);
    place.nameTop = baseline - layout.px(of.nameText);
    const int numberWidth = layout.px(diameter * 0.8), numberHeight = layout.px(diameter * 0.42);
    place.number = {place.centreX - numberWidth / 2, place.centreY - numberHeight / 2, numberWidth,
                    numberHeight};
    const bool small = !big || cell.parts > 1;
    place.numberText = (small ? of.spreadText : of.numberText) * layout.scale;
    place.unitText = of.unitText * layout.scale;
    place.nameText = of.nameText * layout.scale;
    place.scale = layout.scale * unit;
    return place;
}

SectionPlace placeOf(const PathSection& section, const ScreenLayout& layout) {
    const LayoutMeasures& of = layout.measures;
    const double unit = stepFactor(layout);
    const Box& box = layout.sections[static_cast<std::size_t>(section.section)];
    const int lineY = layout.px(of.line);
    const auto row = [&](int x, double width, double height) {
        const int pixels = layout.px(height * unit);
        return Box{x, lineY - pixels / 2, layout.px(width * unit), pixels};
    };
    SectionPlace place{};
    place.lineY = lineY;
    place.lineTo = box.right() - layout.px(section.section == Section::output ? 0 : 8 * unit);
    place.titleX = box.x;
    place.titleText = of.sectionText * layout.scale;
    if (section.hasSwitch) {
        place.switchBox = row(box.x, kSwitchWidth, kSwitchHeight);
        place.titleX = place.switchBox.right() + layout.px(7 * unit);
    }
    const auto [first, count] = columnsOf(section.section);
    const Box& last = layout.columns[static_cast<std::size_t>(first + count - 1)];
    if (section.hasSync) { // at the last column's right, but clear of the title
        const auto letters = static_cast<double>(std::string_view(section.title).size());
        const double title = kMostLetter * of.sectionText * letters;
        const int clear = place.titleX + layout.px(title + kAfterTitle * unit);
        const int right = last.right() - layout.px(kSyncWidth * unit);
        place.syncBox = row(std::max(clear, right), kSyncWidth, kSyncHeight);
    }
    return place;
}

} // namespace zephyra
