// ScanRun and scanWay: how the scan went over a render, as what is drawn of it.
#pragma once

#include <vector>

namespace zephyra {

/// The scan while nothing but its own speed moved it. Positions are fractions of the source, as in
/// GrainMark.
struct ScanRun {
    double seconds, length; ///< when it begins, and for how long it goes on
    double phase;           ///< where in its part it begins, 0 to 1
    double travel;          ///< parts that it crosses by its end; at their ends it wraps
    double low, span;       ///< its part; a negative span is crossed downwards
    double drift = 0;       ///< how far the part itself moves meanwhile: live input goes on

    double end() const noexcept { return seconds + length; }
};

/// Adds a run that begins where the last one ends, or later: one that goes on in the same way makes
/// the last one longer, and one that was shorter than finest seconds gives way. So the runs stay as
/// few as a picture can show. Any thread but RENDER, as the rest.
void addScanRun(std::vector<ScanRun>& runs, const ScanRun& run, double finest);

struct ScanPoint {
    double seconds, position;
};

struct ScanLine {
    ScanPoint from, to;
};

/// A time in which it wrapped too often for lines: it was everywhere in its part.
struct ScanBand {
    double from, to; ///< seconds
    double low, high;
};

struct ScanWay {
    std::vector<ScanLine> lines; ///< it moved
    std::vector<ScanLine> jumps; ///< it was put elsewhere, at one time
    std::vector<ScanBand> bands;
};

/// The way through runs. Steps that follow each other evenly, as an LFO's or a hand's, are motion;
/// another step is a jump. A wrap leaves a line's part at one end and begins another
/// line at the other. finest: seconds that can just be told apart.
ScanWay scanWay(const std::vector<ScanRun>& runs, double finest);

} // namespace zephyra
