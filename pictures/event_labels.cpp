#include "pictures/event_labels.h"

#include <algorithm>

namespace zephyra {

namespace {

double leftOf(const EventLabelRoom& room, double at, double width) {
    const double right = at + room.gap, most = room.width - width;
    return right <= most ? right : std::clamp(at - room.gap - width, 0.0, std::max(most, 0.0));
}

/// A row of own labels.
struct Row {
    double end = 0.0; ///< from where on it is free
    double at = -1.0; ///< the place of its last label's event
};

/// The row for a label and where it begins there: the first that is free, else one on which the
/// labels of the same time go on; none where there is no room.
struct Found {
    Row* row;
    double left;
};
Found roomFor(const EventExtent& event, std::vector<Row>& rows, const EventLabelRoom& room) {
    const double left = leftOf(room, event.at, event.width);
    for (Row& row : rows)
        if (row.end <= left) return {&row, left};
    Found found = {nullptr, room.width - event.width};
    for (Row& row : rows)
        if (row.at == event.at && row.end <= found.left) found = {&row, row.end};
    return found;
}

/// Places what has room on so many rows; the rest gathers on the row below.
std::vector<EventLabel> placed(const std::vector<EventExtent>& events, const EventLabelRoom& room,
                               std::size_t rows) {
    std::vector<Row> own(rows);
    double gathered = 0.0; // from where on the row below is free
    std::size_t last = 0;  // the label there that later events join
    std::vector<EventLabel> labels;
    for (std::size_t i = 0; i < events.size(); ++i) {
        const auto [row, left] = roomFor(events[i], own, room);
        if (row) {
            *row = {left + events[i].width + 2 * room.gap, events[i].at};
            labels.push_back({i, 0, static_cast<std::size_t>(row - own.data()), left});
            continue;
        }
        const double below = leftOf(room, events[i].at, room.othersWidth);
        if (below < gathered) {
            ++labels[last].others;
            continue;
        }
        last = labels.size();
        gathered = below + room.othersWidth + 2 * room.gap;
        labels.push_back({i, 1, rows, below});
    }
    return labels;
}

} // namespace

std::vector<EventLabel> placeEventLabels(const std::vector<EventExtent>& events,
                                         const EventLabelRoom& room) {
    std::vector<EventLabel> all = placed(events, room, room.rows);
    const bool gathers = std::ranges::any_of(all, [](auto& label) { return label.others > 0; });
    return gathers ? placed(events, room, room.rows - 1) : all;
}

} // namespace zephyra
