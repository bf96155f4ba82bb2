// Curve: a smooth line through a few points, for everything that changes while a sound lasts.
#pragma once

#include "resources/make_samples/chance.h"

#include <cstddef>
#include <vector>

namespace zephyra {

/// A piecewise cubic that passes through its points, with a continuous slope, and never overshoots
/// them: pitch glides and levels stay inside what the tables say.
class Curve {
public:
    struct Point {
        double at;
        double value;
    };

    /// At least one point, `at` strictly rising (seconds, or any unit the user of the curve takes).
    explicit Curve(std::vector<Point> points);

    /// The value at a place; before the first and after the last point the end's value holds.
    double operator()(double at) const;

private:
    std::vector<Point> points_;
    std::vector<double> slopes_; // one a point
};

/// A line that wanders between -1 and 1: a new random height `perSecond` times a second from time 0
/// to `length` seconds, joined smoothly. What makes a held tone live.
Curve wander(Chance& chance, double perSecond, double length);

} // namespace zephyra
