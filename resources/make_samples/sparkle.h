// sparkle: high glints that come and go over a held chord.
#pragma once

#include "resources/make_samples/chance.h"
#include "resources/make_samples/signal.h"

#include <vector>

namespace zephyra {

/// `count` short sine swells between 1.5 and 7 kHz over the time 0 to length seconds, each at a
/// harmonic of one of the roots (Hz, at least one).
Signal sparkle(const std::vector<double>& roots, int count, double length, Chance& chance);

} // namespace zephyra
