// AutomationLane: one parameter's automation, asked block by block what its host sends.
#pragma once

#include "rendering/events/automation_file.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zephyra {

/// Walks a parameter's points forward. Each is sent at its frame, of several at one the last. Where
/// a ramp is under way the value it has reached is sent with each block, and every kRampFrames of a
/// long one.
class AutomationLane {
public:
    /// points: all of one parameter, by time, at least one. start: the linear value before the
    /// first.
    AutomationLane(std::vector<AutomationPoint> points, float start);

    static constexpr std::uint64_t kRampFrames = 512; ///< a step of 12 ms, as in common blocks

    struct Event {
        float value;          ///< linear
        std::uint32_t offset; ///< frames from the block's start
        bool operator==(const Event&) const = default;
    };

    /// What is sent with the block of frames at sampleRate (Hz) that starts with frame first.
    /// Blocks follow each other.
    std::vector<Event> next(std::uint64_t first, std::uint32_t frames, double sampleRate);

    ControlId parameter() const { return points_.front().parameter; }
    /// The linear value at a time.
    float valueAt(double seconds) const;

private:
    bool runsThrough(std::uint64_t frame, double sampleRate) const;

    std::vector<AutomationPoint> points_;
    float start_;
    std::size_t passed_ = 0; // points that were sent
};

/// The points, a lane per parameter in address order; start gives each one's linear value before.
template <typename Start>
std::vector<AutomationLane> automationLanes(const std::vector<AutomationPoint>& points,
                                            Start start) {
    std::vector<AutomationLane> lanes;
    for (std::size_t address = 0; address < kParameterCount; ++address) {
        const auto id = static_cast<ControlId>(address);
        std::vector<AutomationPoint> own;
        for (const AutomationPoint& point : points)
            if (point.parameter == id) own.push_back(point);
        if (!own.empty()) lanes.emplace_back(std::move(own), start(id));
    }
    return lanes;
}

} // namespace zephyra
