// gravityStep: exponential smoothing (one pole, in real time) towards a target.
#pragma once

#include <algorithm>
#include <cmath>

namespace zephyra {

/// How near to its target something counts as there, as a fraction of its range: too little to see
/// or to hear, and the way ends at some time.
inline constexpr double kGravityNear = 1e-5;

/// Where something at from is after seconds on its way to `to`. gravity 0 is there at once; up to
/// 0.99 the time constant is 0.25 s · gravity / (1 - gravity), so that a half lags by a quarter of
/// a second and 0.99 by 25 s; more counts as that. Many short steps lead where one long one does,
/// and none overshoots; closer than near is there. Any thread.
inline double gravityStep(double from, double to, double gravity, double seconds,
                          double near) noexcept {
    constexpr double kSlowness = 0.25, kMost = 0.99;
    const double held = std::clamp(gravity, 0.0, kMost);
    const double constant = kSlowness * held / (1.0 - held);
    if (!(constant > 0.0)) return to;
    const double reached = to + (from - to) * std::exp(-std::max(seconds, 0.0) / constant);
    return std::abs(reached - to) <= near ? to : reached;
}

} // namespace zephyra
