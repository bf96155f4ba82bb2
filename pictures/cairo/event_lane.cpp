#include "pictures/cairo/event_lane.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

namespace zephyra {

namespace {

// Pixels.
constexpr double kRowHeight = 16, kBelow = 6, kGap = 5;
constexpr std::size_t kMostRows = 12;
constexpr double kLongestLabel = 420;

const TextStyle kStyle = {.colour = theme::text, .size = 11.5};
const TextStyle kOthersStyle = {.colour = theme::faintText, .size = 11.5};

std::string othersText(std::size_t count) {
    return std::string("+").append(std::to_string(count)).append(" more");
}

/// A line for each place, fainter where they crowd.
void drawLines(Canvas& canvas, const std::vector<std::pair<double, double>>& tops, double bottom,
               double width) {
    constexpr double kRoomPerLine = 12;
    const double crowd = std::max(static_cast<double>(tops.size()) * kRoomPerLine / width, 1.0);
    const Colour colour = Colour::hex(0xFFFFFF, 0.32 / crowd);
    const double dash[] = {3, 3};
    cairo_set_dash(canvas.context(), dash, 2, 0);
    for (const auto& [x, top] : tops) canvas.line(x, top, x, bottom, colour);
    cairo_set_dash(canvas.context(), nullptr, 0, 0);
}

} // namespace

EventLane::EventLane(const std::vector<EventMark>& events, double width, double seconds)
    : events_(events) {
    Canvas canvas(1, 1); // to measure on
    std::vector<EventExtent> extents;
    for (const EventMark& event : events) {
        const double at = std::clamp(event.seconds / seconds, 0.0, 1.0) * width;
        places_.push_back(std::round(at));
        extents.push_back({at, std::min(canvas.textWidth(event.label, kStyle), kLongestLabel)});
    }
    labels_ = placeEventLabels(
        extents, {.width = width,
                  .gap = kGap,
                  .rows = kMostRows,
                  .othersWidth = canvas.textWidth(othersText(events.size()), kOthersStyle)});
}

double EventLane::height() const {
    std::size_t rows = 0;
    for (const EventLabel& label : labels_) rows = std::max(rows, label.row + 1);
    return rows == 0 ? 0 : static_cast<double>(rows) * kRowHeight + kBelow;
}

std::string EventLane::textOf(const EventLabel& label, Canvas& canvas) const {
    return label.others > 0 ? othersText(label.others)
                            : canvas.fitted(events_[label.event].label, kLongestLabel, kStyle);
}

void EventLane::draw(Canvas& canvas, const Box& box, double bottom) const {
    std::vector<std::pair<double, double>> tops; // of each line, by place
    for (const double place : places_)
        if (tops.empty() || tops.back().first != box.x + place + 0.5)
            tops.emplace_back(box.x + place + 0.5, box.bottom() - kBelow);
    for (const EventLabel& label : labels_) {
        const double top = box.y + static_cast<double>(label.row) * kRowHeight;
        auto line = std::ranges::find(tops, box.x + places_[label.event] + 0.5,
                                      &std::pair<double, double>::first);
        line->second = std::min(line->second, top + 3);
    }
    drawLines(canvas, tops, bottom, box.width);
    for (const EventLabel& label : labels_) {
        const std::string text = textOf(label, canvas);
        const TextStyle& style = label.others > 0 ? kOthersStyle : kStyle;
        const double x = box.x + label.left;
        const double y = box.y + static_cast<double>(label.row) * kRowHeight;
        canvas.fill({x - 3, y + 1, canvas.textWidth(text, style) + 6, kRowHeight - 1},
                    theme::background);
        canvas.text(x, y + 12, text, style);
    }
}

} // namespace zephyra
