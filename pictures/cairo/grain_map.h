// GrainMap: every grain of a render in time and source position, with its pitch as colour.
#pragma once

#include "pictures/cairo/picture_axes.h"
#include "pictures/cairo/picture_canvas.h"

#include <string>
#include <vector>

namespace zephyra {

/// One grain. Positions are fractions of the source and may lie outside 0 to 1.
struct GrainMark {
    double start, length; ///< seconds
    double from, to;      ///< where in the source it starts and ends to read
    double semitones;     ///< of its pitch against the source's
    double level;         ///< linear; the louder side
    bool dropped;         ///< no voice was free
};

/// Where the scan stood; position as in GrainMark.
struct ScanMark {
    double seconds, position;
};

/// Something that happened at a time.
struct EventMark {
    double seconds;
    std::string label;
};

/// What reading beyond the source's end does: start again at its beginning, or leave the map.
enum class SourceEdge { wraps, ends };

struct GrainMap {
    double seconds = 0;     ///< the map's width; above 0
    double playSeconds = 0; ///< while grains start
    SourceEdge edge = SourceEdge::wraps;
    double low = 0, high = 1; ///< the scanned part
    std::vector<GrainMark> grains;
    std::vector<ScanMark> scan; ///< by time
    std::vector<EventMark> events;
};

/// Semitones up to which a map's colours go either way: a round number that holds every grain.
double pitchRange(const GrainMap& map);

/// The colour of a pitch on a scale from -range to range semitones: low ones warm, high ones cool.
Colour pitchColour(double semitones, double range);

/// Draws the map into box.
void drawGrainMap(Canvas& canvas, const Box& box, const GrainMap& map);

/// The scale of pitch colours from -range to range in box, labelled at its right.
void drawPitchLegend(Canvas& canvas, const Box& box, double range);

} // namespace zephyra
