#include "pictures/event_labels.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace zephyra {

namespace {

double leftOf(const EventLabelRoom& room, double at, double width) {
    const double right = at + room.gap, most = room.width - width;
    return right <= most ? right : std::clamp(at - room.gap - width, 0.0, std::max(most, 0.0));
}

/// A row of own labels, with the gaps around them.
struct Row {
    double begin = 0.0, end = 0.0; ///< of the labels of the latest time
    double before = 0.0;           ///< where those of an earlier time end
    double at = -1.0;              ///< the place of the latest time
};

/// Takes room for a label from where it begins on; none where the row has no room. Of a time that
/// has labels there already, it stands beside them.
std::optional<double> takeRoom(Row& row, const EventExtent& event, const EventLabelRoom& room) {
    const double wide = event.width + 2 * room.gap;
    if (row.at != event.at) {
        const double left = leftOf(room, event.at, event.width);
        if (left < row.end) return {};
        row = {left, left + wide, row.end, event.at};
        return left;
    }
    if (row.end + event.width <= room.width) return std::exchange(row.end, row.end + wide);
    if (row.begin - wide < row.before) return {};
    return row.begin -= wide;
}

struct Placed {
    std::size_t row;
    double left;
};

/// On the first row that is free; where none is, beside the fewest others of its time.
std::optional<Placed> placeOf(const EventExtent& event, std::vector<Row>& rows,
                              const EventLabelRoom& room) {
    std::vector<std::size_t> shared; // rows that hold labels of its time
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].at == event.at)
            shared.push_back(i);
        else if (const auto left = takeRoom(rows[i], event, room))
            return Placed{i, *left};
    }
    std::ranges::sort(shared, {}, [&rows](std::size_t i) {
        return std::pair(rows[i].end - rows[i].begin, i); // of equal ones the upper
    });
    for (const std::size_t i : shared)
        if (const auto left = takeRoom(rows[i], event, room)) return Placed{i, *left};
    return {};
}

/// Places what has room on so many rows; the rest gathers on the row below.
std::vector<EventLabel> placed(const std::vector<EventExtent>& events, const EventLabelRoom& room,
                               std::size_t rows) {
    std::vector<Row> own(rows);
    double gathered = 0.0; // from where on the row below is free
    std::size_t last = 0;  // the label there that later events join
    std::vector<EventLabel> labels;
    for (std::size_t i = 0; i < events.size(); ++i) {
        if (const auto place = placeOf(events[i], own, room)) {
            labels.push_back({i, 0, place->row, place->left});
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
