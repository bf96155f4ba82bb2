// Tick: a labelled place on a scale, and where those of each kind of scale stand.
#pragma once

#include <string>
#include <vector>

namespace zephyra {

/// An empty label is a grid line only.
struct Tick {
    double at; ///< 0 to 1 along the scale
    std::string label;
};

/// Ticks at round numbers (1, 2 or 5 times a power of ten) of a scale from low to high, at most
/// about `most`. high must be above low. Any thread but RENDER, as the rest.
std::vector<Tick> roundTicks(double low, double high, int most);

/// Ticks of a time scale from 0 to seconds: round seconds, from a minute on "m:ss".
std::vector<Tick> timeTicks(double seconds, int most);

/// The unit of those labels: "s", or "min:s".
const char* timeUnit(double seconds);

/// Ticks at 1, 2 and 5 times the powers of ten of a logarithmic scale in Hz, labelled "200", "1k".
std::vector<Tick> frequencyTicks(double low, double high);

/// Decibels of full scale on both sides of a waveform's middle; scale is the magnitude at the ends.
std::vector<Tick> levelTicks(double scale);

/// Semitones of a scale from -range to range.
std::vector<Tick> pitchTicks(double range);

} // namespace zephyra
