#include "hosting/block_events.h"

#include <utility>

namespace zephyra {

bool BlockEvents::add(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING {
    if (count_ == kCapacity) return false;
    Array& events = *events_;
    std::size_t place = count_++;
    // Hosts sort them, so this hardly ever moves anything.
    for (; place > 0 && events[place - 1].eventSampleTime > frame; --place)
        events[place] = events[place - 1];
    events[place] = event;
    events[place].eventSampleTime = frame;
    return true;
}

const AURenderEvent* BlockEvents::take(std::uint64_t end) ZEPHYRA_NONBLOCKING {
    Array& events = *events_;
    const std::size_t first = taken_;
    while (taken_ < count_ && static_cast<std::uint64_t>(events[taken_].eventSampleTime) < end)
        ++taken_;
    const AURenderEvent* next = nullptr;
    for (std::size_t i = taken_; i > first; --i)
        events[i - 1].next = std::exchange(next, &events[i - 1]);
    return next;
}

void BlockEvents::endBlock(std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    Array& events = *events_;
    std::size_t left = 0;
    for (; taken_ < count_; ++taken_, ++left) {
        events[left] = events[taken_];
        events[left].eventSampleTime -= frames; // which were taken up to there
    }
    count_ = left;
    taken_ = 0;
}

} // namespace zephyra
