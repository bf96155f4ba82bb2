// sortByTime: things that happen, in the order in which they do.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace zephyra {

/// Sorts by the member seconds; those of one time stay in their order.
template <typename Event>
void sortByTime(std::vector<Event>& events) {
    std::vector<std::size_t> order(events.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&events](std::size_t a, std::size_t b) {
        return std::pair(events[a].seconds, a) < std::pair(events[b].seconds, b);
    });
    std::vector<Event> sorted;
    sorted.reserve(events.size());
    for (const std::size_t i : order) sorted.push_back(std::move(events[i]));
    events = std::move(sorted);
}

} // namespace zephyra
