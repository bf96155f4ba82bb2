// EventLabel: where the labels of a picture's events stand, in rows above its time.
#pragma once

#include <cstddef>
#include <vector>

namespace zephyra {

/// An event's place along the time and how long its label is; any unit, as everything here.
struct EventExtent {
    double at, width;
};

/// A label on its row; on the lowest row one may stand for several events that had no room.
struct EventLabel {
    std::size_t event;  ///< whose label it is, or the first of those that it stands for
    std::size_t others; ///< 0: it is the event's own; else how many events it stands for
    std::size_t row;    ///< 0 is the highest
    double left;        ///< where its text begins
};

struct EventLabelRoom {
    double width;       ///< of a row
    double gap;         ///< between an event's line and its label, and between labels
    std::size_t rows;   ///< at least 2
    double othersWidth; ///< of a label that stands for several
};

/// A label for every event, by time, none over another and none beyond the rows' ends: right of its
/// event, or left of it where the rows end; those of one time stand in columns where the rows are
/// too few. An own label is at most as wide as a row. Any thread but RENDER.
std::vector<EventLabel> placeEventLabels(const std::vector<EventExtent>& events,
                                         const EventLabelRoom& room);

} // namespace zephyra
