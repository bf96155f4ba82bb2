// sortBy, sortByTime: things that happen, in the order in which they do.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace zephyra {

/// Sorts by a member that is a time; those of one time stay in their order.
template <typename Event, typename Time>
void sortBy(Time Event::*time, std::vector<Event>& events) {
    std::vector<std::size_t> order(events.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&events, time](std::size_t a, std::size_t b) {
        return std::pair(events[a].*time, a) < std::pair(events[b].*time, b);
    });
    std::vector<Event> sorted;
    sorted.reserve(events.size());
    for (const std::size_t i : order) sorted.push_back(std::move(events[i]));
    events = std::move(sorted);
}

/// The same by the member seconds.
template <typename Event>
void sortByTime(std::vector<Event>& events) {
    sortBy(&Event::seconds, events);
}

} // namespace zephyra
