#include "rendering/control_paths.h"

#include "audiounit/control_text.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace zephyra {

namespace {

void keep(ControlPath::Column& column, float value) {
    if (column.count++ == 0) column = {value, value, value, value, 1};
    column.low = std::min(column.low, value);
    column.high = std::max(column.high, value);
    column.last = value;
}

/// The most that compare puts in front, of the columns that saw something.
template <typename Compare>
float extreme(const std::vector<ControlPath::Column>& columns, float ControlPath::Column::*end,
              Compare compare) {
    bool any = false;
    float value = 0;
    for (const ControlPath::Column& column : columns)
        if (column.count > 0 && (!std::exchange(any, true) || compare(column.*end, value)))
            value = column.*end;
    return value;
}

} // namespace

float ControlPath::lowest() const {
    return extreme(columns, &Column::low, std::less<>());
}

float ControlPath::highest() const {
    return extreme(columns, &Column::high, std::greater<>());
}

std::string ControlPath::valueText(float linear) const {
    const ControlRange& range = controlRange(moved.control);
    const double value = double{displayedFromLinear(range, linear)};
    if (range.kind != ControlKind::continuous)
        return zephyra::valueText(range, static_cast<float>(std::round(value)));
    const double size = std::max(std::abs(value), 0.1);
    const double step = std::pow(10.0, std::min(std::floor(std::log10(size)) - 2, 0.0));
    return zephyra::valueText(range, static_cast<float>(std::round(value / step) * step));
}

ControlPaths::ControlPaths(std::vector<MovedControl> moved, double seconds, std::size_t columns)
    : seconds_(seconds) {
    for (MovedControl& one : moved)
        paths_.push_back({std::move(one), std::vector<ControlPath::Column>(columns)});
}

void ControlPaths::add(double seconds, std::span<const float> values) {
    for (std::size_t i = 0; i < std::min(values.size(), paths_.size()); ++i) {
        std::vector<ControlPath::Column>& columns = paths_[i].columns;
        const double at =
            std::clamp(seconds / seconds_, 0.0, 1.0) * static_cast<double>(columns.size());
        keep(columns[std::min(static_cast<std::size_t>(at), columns.size() - 1)], values[i]);
    }
}

} // namespace zephyra
