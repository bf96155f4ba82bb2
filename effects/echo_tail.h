// echoTail: how long the echo goes on after its input has ended.
#pragma once

#include "platform/threads/realtime.h"

namespace zephyra {

/// One side of the echo.
struct EchoSide {
    double delay; ///< samples
    double gain;  ///< 0 to 0.98; what each repeat keeps of the one before
};

/// The longest tail that is waited for, in seconds: at the highest gain and delay it would be half
/// an hour.
inline constexpr double kLongestEchoTail = 30.0;

/// Seconds from the end of the input until the last repeat that is not yet 60 dB down has sounded,
/// of the side that takes longer; at most kLongestEchoTail. sampleRate in Hz is the output's. Any
/// thread.
double echoTail(const EchoSide& left, const EchoSide& right, double sampleRate) ZEPHYRA_NONBLOCKING;

} // namespace zephyra
