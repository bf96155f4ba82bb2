// CellPlace, SectionPlace: where everything of the path stands, in pixels of its own area.
#pragma once

#include "screens/model/path/path_table.h"
#include "screens/model/screen_layout.h"

namespace zephyra {

/// Of one cell. The knob's parts are for every kind: a tile or dots stand where a knob would.
struct CellPlace {
    Box cell;                              ///< what a hand reaches; cells never overlap
    int centreX, centreY, diameter;        ///< of the knob, relative to the cell
    int nameTop, nameHeight;               ///< of the name's line, relative to the cell
    Box number;                            ///< where a press types a value; relative to the cell
    double numberText, unitText, nameText; ///< letters, in pixels
    double scale;                          ///< pixels a unit
    bool operator==(const CellPlace&) const = default;
};

/// Of a section's title row.
struct SectionPlace {
    Box switchBox; ///< empty without one
    int titleX;
    Box syncBox;       ///< empty without one
    int lineY, lineTo; ///< the signal line ends with the section
    double titleText;
};

CellPlace placeOf(const PathCell& cell, const ScreenLayout& layout);
SectionPlace placeOf(const PathSection& section, const ScreenLayout& layout);
/// Where full names would nearly touch, all of their row are short.
bool usesShortName(const PathCell& cell, const ScreenLayout& layout);

} // namespace zephyra
