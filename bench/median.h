// median: the middle of measured values.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace zephyra {

/// The upper one of two; values must not be empty.
inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Of the ratios of a round here to the same round there.
inline double medianRatio(std::vector<double> here, const std::vector<double>& there) {
    for (std::size_t i = 0; i < here.size(); ++i) here[i] /= there[i];
    return median(std::move(here));
}

} // namespace zephyra
