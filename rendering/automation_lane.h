// AutomationLane: one parameter's automation, asked block by block what its host sends.
#pragma once

#include "rendering/automation_file.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace zephyra {

/// Walks a parameter's points forward. A step is sent once, in the block that holds its time; a
/// ramp is one event a block, from the block after the point before to the one that holds its own.
class AutomationLane {
public:
    /// points: all of one parameter, by time, at least one. start: the linear value before the
    /// first.
    AutomationLane(std::vector<AutomationPoint> points, float start);

    struct Event {
        float value;          ///< linear
        std::uint32_t offset; ///< frames from the block's start
        bool ramp;
    };

    /// What is sent with the block from `from` to `to` seconds (excluded) at sampleRate; none when
    /// nothing changes. Blocks follow each other.
    std::optional<Event> next(double from, double to, double sampleRate);

    ControlId parameter() const { return points_.front().parameter; }
    /// The linear value at a time.
    float valueAt(double seconds) const;

private:
    std::vector<AutomationPoint> points_;
    float start_;
    std::size_t passed_ = 0; // points before the present block's end
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
