#include "pictures/control_path.h"

#include <algorithm>
#include <utility>

namespace zephyra {

void SeenValues::add(float value) noexcept {
    if (count++ == 0) first = low = high = value;
    low = std::min(low, value);
    high = std::max(high, value);
    last = value;
}

ControlPath::ControlPath(std::string controlName, std::string whatMoves, std::size_t columnCount)
    : name(std::move(controlName)), mover(std::move(whatMoves)),
      columns(std::max<std::size_t>(columnCount, 1)) {}

void ControlPath::add(double share, float value) {
    const double at = std::clamp(share, 0.0, 1.0) * static_cast<double>(columns.size());
    columns[std::min(static_cast<std::size_t>(at), columns.size() - 1)].add(value);
    all.add(value);
}

double ControlPath::heightOf(float value) const noexcept {
    const float span = all.high - all.low;
    return span > 0 ? double{value - all.low} / double{span} : 0.5;
}

} // namespace zephyra
