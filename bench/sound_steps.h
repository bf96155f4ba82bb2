// StepFigure: how far a change makes the sound jump, against how far it moves by itself.
#pragma once

#include "bench/sound_changes.h"

#include <cstddef>

namespace zephyra {

/// Largest distances from one sample to the next, in either channel.
struct StepFigure {
    double before = 0.0; ///< while it stood as before, in kStaticSeconds
    double around = 0.0; ///< in kAroundSeconds
    double after = 0.0;  ///< while it stands as afterwards

    /// 1 is clean. Below -80 dB nothing counts.
    double ratio() const;
};

/// How long is listened on either side: a few passes through the sounds. And around the change: the
/// next grain may be two seconds away, and as long.
inline constexpr double kStaticSeconds = 10.0, kAroundSeconds = 3.0;

/// The largest step between frames first and last of what was played.
double largestStep(const SoundPlayer& player, std::size_t first, std::size_t last);

/// Plays, changes, and plays on. at: seconds by which the change comes later, so that it meets
/// another moment of the sound; up to 2.
StepFigure measureStep(const SoundChange& change, const SoundSetup& setup, double at);

/// The worst ratio of three moments, in the middle of vowels and at three phases of the sine.
double worstRatio(const SoundChange& change, const SoundSetup& setup);

/// The most that counts as clean: below it the measure's own error begins.
inline constexpr double kCleanRatio = 1.1;

} // namespace zephyra
