// GrainMap: every grain of a render in time, source position and pitch, and how the scan went.
#pragma once

#include "pictures/scan_way.h"

#include <string>
#include <vector>

namespace zephyra {

/// One grain. Positions are fractions of the source and may lie outside 0 to 1.
struct GrainMark {
    double start, length; ///< seconds
    double from, to;      ///< where in the source it starts and ends to read
    double semitones;     ///< of its pitch against the source's
    double level;         ///< linear; the louder side
    double pan;           ///< -1 left to 1 right
    bool dropped;         ///< no voice was free
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
    std::vector<ScanRun> scan; ///< by time
    std::vector<EventMark> events;
};

/// Semitones up to which a map's colours go either way: a round number that holds every grain.
/// Any thread but RENDER, as the rest.
double pitchRange(const GrainMap& map);

/// The rounds through the source in which a grain reads, 0 the one that its positions count from:
/// in round n the map shows it n source lengths further down.
struct SourceRounds {
    int first, last;
};

/// At most 25; one where reading ends with the source.
SourceRounds roundsOf(const GrainMark& grain, SourceEdge edge);

} // namespace zephyra
