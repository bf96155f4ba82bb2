// setFraction: how a setter takes a normalised value (0..1).
#pragma once

#include <algorithm>
#include <cmath>

namespace zephyra {

/// Holds value to 0..1; what is not finite is refused, and fraction stays. Any thread.
inline void setFraction(float& fraction, float value) {
    if (std::isfinite(value)) fraction = std::clamp(value, 0.0f, 1.0f);
}

} // namespace zephyra
