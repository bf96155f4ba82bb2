// EventLane: the labels of what happens during a render, each above its time.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "pictures/event_labels.h"
#include "pictures/grain_map.h"

#include <string>
#include <vector>

namespace zephyra {

/// MAIN.
class EventLane {
public:
    /// For a lane of so many pixels that shows so many seconds. events, by time, outlive this.
    EventLane(const std::vector<EventMark>& events, double width, double seconds);

    /// Pixels; 0 where nothing happens.
    double height() const;
    /// Draws the labels across box, as wide as the lane, with a line from each down to bottom.
    void draw(Canvas& canvas, const Box& box, double bottom) const;

private:
    std::string textOf(const EventLabel& label, Canvas& canvas) const;

    const std::vector<EventMark>& events_;
    std::vector<double> places_; // pixels along the lane
    std::vector<EventLabel> labels_;
};

} // namespace zephyra
