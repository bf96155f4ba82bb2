// Accelerometer: how the machine is tilted.
#pragma once

#include "platform/threads/relaxed.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

/// A machine without one, as every desktop is, never calls set; whoever has one (a tablet's shell,
/// a test) does. Any thread but where said.
class Accelerometer {
public:
    enum class Axis { x, y };

    /// Whether any value ever came.
    bool isPresent() const { return present_; }
    /// What people are told while there is none.
    static constexpr const char* kAbsent = "This device has no accelerometer";

    /// Tilt from -1 to 1, 0 level; beyond it is held there. Ignored when one is not finite.
    void set(float x, float y) {
        if (!std::isfinite(x) || !std::isfinite(y)) return;
        x_ = std::clamp(x, -1.0f, 1.0f);
        y_ = std::clamp(y, -1.0f, 1.0f);
        present_ = true;
    }
    /// 0 while absent.
    float value(Axis axis) const { return axis == Axis::x ? x_ : y_; }

private:
    Relaxed<float> x_{0.0f}, y_{0.0f};
    Relaxed<bool> present_{false};
};

} // namespace zephyra
