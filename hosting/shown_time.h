// ShownTime: what a host last told of the music, for a window that looks at it.
#pragma once

#include "hosting/host_time.h"
#include "platform/threads/relaxed.h"

namespace zephyra {

/// Where the music stands. Plain data.
struct MusicPosition {
    bool isTold = false;         ///< by the host; else the rest means nothing
    bool isMoving = false;       ///< its transport rolls, or it does not tell
    double tempo = 0.0;          ///< beats per minute
    double beats = 0.0;          ///< in quarters; below 0 in a pre-roll
    double quartersOfBar = 4.0;  ///< a bar's length
    double quartersOfBeat = 1.0; ///< of the meter
};

/// RENDER writes it once a block; several fields may be of different blocks.
class ShownTime {
public:
    /// RENDER.
    void show(const HostTime& time) ZEPHYRA_NONBLOCKING;
    /// Any thread.
    MusicPosition position() const ZEPHYRA_NONBLOCKING;

private:
    Relaxed<bool> told_ = false, moving_ = false;
    Relaxed<double> tempo_ = 0.0, beats_ = 0.0, numerator_ = 4.0, denominator_ = 4.0;
};

} // namespace zephyra
