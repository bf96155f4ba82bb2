// Signal: a mono sound under construction, and the numbers every part of the generator shares.
#pragma once

#include <cstddef>
#include <numbers>
#include <vector>

namespace zephyra {

/// Mono samples at kSampleRate, shape [frames]; full scale is 1, but only the finished sound is
/// normalised, so parts may be mixed at any level.
using Signal = std::vector<double>;

/// Frames per second of everything the generator makes: the rate of the built-in files.
inline constexpr int kSampleRate = 44100;

/// Radians in one cycle.
inline constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// The number of whole frames in seconds (0 or more).
constexpr std::size_t frames(double seconds) {
    return static_cast<std::size_t>(seconds * kSampleRate + 0.5);
}

/// The time of a frame, in seconds.
constexpr double timeOf(std::size_t frame) {
    return static_cast<double>(frame) / kSampleRate;
}

/// Amplitude factor of a level in decibels.
double fromDecibels(double decibels);

/// Adds part to sound, its first frame at the time start (seconds). What reaches past the end of
/// sound is left out.
void mixInto(Signal& sound, const Signal& part, double start);

/// Rises from 0 to 1 over the first `in` seconds and falls to 0 over the last `out` seconds, both
/// as half cosines, so that no edge clicks.
void fadeEdges(Signal& sound, double in, double out);

/// Scales sound so that its largest magnitude stands at peakDecibels (relative to full scale).
/// Silence stays as it is.
void normalise(Signal& sound, double peakDecibels);

} // namespace zephyra
