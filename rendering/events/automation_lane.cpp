#include "rendering/events/automation_lane.h"

#include "rendering/events/time_order.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

AutomationLane::AutomationLane(std::vector<AutomationPoint> points, float start)
    : points_(std::move(points)), start_(start) {}

float AutomationLane::valueAt(double seconds) const {
    const auto after = std::ranges::upper_bound(points_, seconds, {}, &AutomationPoint::seconds);
    const bool first = after == points_.begin();
    const double from = first ? 0.0 : std::prev(after)->seconds;
    const float before = first ? start_ : std::prev(after)->linear;
    if (after == points_.end() || !after->ramp || after->seconds <= from) return before;
    const double share = (seconds - from) / (after->seconds - from);
    return before + static_cast<float>(share) * (after->linear - before);
}

/// Whether a ramp has left the point before it by then.
bool AutomationLane::runsThrough(std::uint64_t frame, double sampleRate) const {
    if (passed_ == points_.size() || !points_[passed_].ramp) return false;
    const double begin = passed_ == 0 ? 0.0 : points_[passed_ - 1].seconds;
    return dueFrame(begin, sampleRate) < frame;
}

std::vector<AutomationLane::Event> AutomationLane::next(std::uint64_t first, std::uint32_t frames,
                                                        double sampleRate) {
    std::vector<Event> sent;
    for (std::uint64_t at = 0; at < frames; at += kRampFrames) {
        const std::uint64_t end = first + std::min<std::uint64_t>(at + kRampFrames, frames);
        if (runsThrough(first + at, sampleRate))
            sent.push_back({valueAt(static_cast<double>(first + at) / sampleRate),
                            static_cast<std::uint32_t>(at)});
        for (; passed_ < points_.size(); ++passed_) {
            const std::uint64_t due = dueFrame(points_[passed_].seconds, sampleRate);
            if (due >= end) break;
            const Event event{points_[passed_].linear, static_cast<std::uint32_t>(due - first)};
            if (!sent.empty() && sent.back().offset == event.offset) sent.pop_back();
            sent.push_back(event);
        }
    }
    return sent;
}

} // namespace zephyra
