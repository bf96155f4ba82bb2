// dueFrame, sortBy, sortByTime: when things happen, and in which order.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace zephyra {

/// The frame of the output at which something of this time, from 0 up, is due; a far one, still a
/// number, for what is too long to be counted.
inline std::uint64_t dueFrame(double seconds, double sampleRate) {
    return static_cast<std::uint64_t>(std::min(std::floor(seconds * sampleRate), 0x1p62));
}

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
