#include "rendering/automation_lane.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

AutomationLane::AutomationLane(std::vector<AutomationPoint> points, float start)
    : points_(std::move(points)), start_(start) {}

float AutomationLane::valueAt(double seconds) const {
    const auto after =
        std::find_if(points_.begin(), points_.end(),
                     [seconds](const AutomationPoint& point) { return point.seconds > seconds; });
    const bool first = after == points_.begin();
    const double from = first ? 0.0 : std::prev(after)->seconds;
    const float before = first ? start_ : std::prev(after)->linear;
    if (after == points_.end() || !after->ramp || after->seconds <= from) return before;
    const double share = (seconds - from) / (after->seconds - from);
    return before + static_cast<float>(share) * (after->linear - before);
}

std::optional<AutomationLane::Event> AutomationLane::next(double from, double to,
                                                          double sampleRate) {
    const std::size_t before = passed_;
    while (passed_ < points_.size() && points_[passed_].seconds < to) ++passed_;
    if (passed_ < points_.size() && points_[passed_].ramp)
        return Event{valueAt(to), 0, true}; // on its way: where it stands at the block's end
    if (passed_ == before) return std::nullopt;
    const AutomationPoint& last = points_[passed_ - 1];
    if (last.ramp) return Event{last.linear, 0, true};
    const double offset = std::floor(std::max(last.seconds - from, 0.0) * sampleRate);
    return Event{last.linear, static_cast<std::uint32_t>(offset), false};
}

} // namespace zephyra
