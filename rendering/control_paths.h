// ControlPaths: where the controls that something moves stood over a render's time.
#pragma once

#include "stream/control_ranges.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// A control that is moved while the render goes on.
struct MovedControl {
    ControlId control;
    std::string mover; ///< what moves it, for people: "LFO sine 0.25 Hz", "CC 1", "automation"
};

/// One control's way, thinned to the columns of a picture.
struct ControlPath {
    /// What was seen within a column of time; count 0: nothing.
    struct Column {
        float first = 0, low = 0, high = 0, last = 0; ///< linear values
        std::size_t count = 0;
    };

    MovedControl moved;
    std::vector<Column> columns;
    float lowest() const;
    float highest() const;
    /// "20 Hz" of a linear value of this control; three digits say enough of one on its way.
    std::string valueText(float linear) const;
};

/// MAIN.
class ControlPaths {
public:
    /// seconds: of the whole render, above 0. columns: at least 1.
    ControlPaths(std::vector<MovedControl> moved, double seconds, std::size_t columns);

    /// The linear values of all controls, in the order of moved, at a time from 0 to seconds.
    void add(double seconds, std::span<const float> values);

    const std::vector<ControlPath>& all() const noexcept { return paths_; }

private:
    double seconds_;
    std::vector<ControlPath> paths_;
};

} // namespace zephyra
