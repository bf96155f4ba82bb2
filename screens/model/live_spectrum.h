// LiveSpectrum: the newest sound as a spectrum on a logarithmic frequency scale.
#pragma once

#include "pictures/hann_spectrum.h"
#include "screens/model/sound_arrival.h"
#include "stream/oscilloscope.h"

#include <cstddef>
#include <span>
#include <vector>

namespace zephyra {

/// Decibels by columns of equal ratio from kLowest to kHighest. A level rises over kRise and falls
/// by kFall. Message thread.
class LiveSpectrum {
public:
    static constexpr std::size_t kFrames = 4096; ///< of one spectrum, 93 ms at 44100 Hz
    static constexpr double kLowest = 30.0, kHighest = 20000.0; ///< Hz
    static constexpr float kFloor = -96.0f;                     ///< dB; stands for everything below
    static constexpr double kRise = 0.03;                       ///< seconds, time constant
    static constexpr double kFall = 40.0;                       ///< dB per second

    /// How many columns there are, 0 at first; all at the floor until the next frame.
    void setColumns(std::size_t count);
    /// Shows nothing of what came before, as from when it is switched on.
    void begin(const Oscilloscope& oscilloscope);
    /// Reads oscilloscope, which somebody must watch, at sampleRate (Hz). Whether a column changed.
    bool advance(const Oscilloscope& oscilloscope, double sampleRate, const FrameTime& time);

    /// Relative to a sine of full scale in both channels; column 0 is the lowest.
    std::span<const float> decibels() const noexcept { return decibels_; }

    /// Where a frequency stands, 0 at kLowest, 1 at kHighest, linear in pitch; and the inverse.
    static double placeOf(double hertz);
    static double frequencyAt(double place);

private:
    void read(const Oscilloscope& oscilloscope);
    void placeColumns(double sampleRate);
    float levelOf(std::size_t column) const;
    bool follow(double seconds);

    std::vector<float> decibels_, targets_; // shown, and where those go
    std::vector<double> edges_;             // of the columns, in bins; one more than there are
    double rate_ = 0.0;                     // that they hold for, Hz
    std::vector<float> left_, right_;
    HannSpectrum spectrum_{kFrames};
    SoundArrival arrival_;
};

} // namespace zephyra
