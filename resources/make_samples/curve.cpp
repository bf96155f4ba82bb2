#include "resources/make_samples/curve.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

/// The slope at a point between two pieces of the slopes before and after: their harmonic mean, and
/// flat at a peak or trough. This keeps the cubic monotone (Fritsch and Butland, 1984).
double innerSlope(double before, double after) {
    if (before * after <= 0.0) return 0.0;
    return 2.0 * before * after / (before + after);
}

} // namespace

Curve::Curve(std::vector<Point> points) : points_(std::move(points)), slopes_(points_.size(), 0.0) {
    if (points_.size() < 2) return;
    std::vector<double> rises;
    for (std::size_t i = 1; i < points_.size(); ++i)
        rises.push_back((points_[i].value - points_[i - 1].value) /
                        (points_[i].at - points_[i - 1].at));
    slopes_.front() = rises.front();
    slopes_.back() = rises.back();
    for (std::size_t i = 1; i + 1 < points_.size(); ++i)
        slopes_[i] = innerSlope(rises[i - 1], rises[i]);
}

double Curve::operator()(double at) const {
    if (at <= points_.front().at) return points_.front().value;
    if (at >= points_.back().at) return points_.back().value;
    const auto next = std::upper_bound(points_.begin(), points_.end(), at,
                                       [](double x, const Point& point) { return x < point.at; });
    const std::size_t right = static_cast<std::size_t>(next - points_.begin());
    const Point& a = points_[right - 1];
    const Point& b = points_[right];
    const double width = b.at - a.at;
    const double x = (at - a.at) / width;
    const double toB = x * x * (3.0 - 2.0 * x); // Hermite form
    return a.value + (b.value - a.value) * toB +
           width * x * (1.0 - x) * (slopes_[right - 1] * (1.0 - x) - slopes_[right] * x);
}

Curve wander(Chance& chance, double perSecond, double length) {
    std::vector<Curve::Point> points;
    for (double at = 0.0; at <= length + 1.0 / perSecond; at += 1.0 / perSecond)
        points.push_back({at, chance.noise()});
    return Curve(std::move(points));
}

} // namespace zephyra
