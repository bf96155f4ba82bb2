#include "hosting/shown_time.h"

#include <cmath>

namespace zephyra {

void ShownTime::show(const HostTime& time) ZEPHYRA_NONBLOCKING {
    AUMusicalContext context;
    if (!time.musicalContext(context)) return;
    tempo_ = context.currentTempo;
    beats_ = context.currentBeatPosition;
    if (std::isfinite(context.timeSignatureNumerator)) numerator_ = context.timeSignatureNumerator;
    if (std::isfinite(context.timeSignatureDenominator))
        denominator_ = context.timeSignatureDenominator;
    moving_ = time.isMoving();
    told_ = true;
}

MusicPosition ShownTime::position() const ZEPHYRA_NONBLOCKING {
    const double beat = 4.0 / denominator_;
    return {.isTold = told_,
            .isMoving = moving_,
            .tempo = tempo_,
            .beats = beats_,
            .quartersOfBar = numerator_ * beat,
            .quartersOfBeat = beat};
}

} // namespace zephyra
