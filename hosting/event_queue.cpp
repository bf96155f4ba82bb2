#include "hosting/event_queue.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

std::uint64_t cutOf(const EventQueue::Entry& entry) {
    constexpr std::uint64_t kGrid = EventQueue::kGrid;
    return (entry.frame + kGrid - 1) / kGrid * kGrid;
}

bool isParameter(const EventQueue::Entry& entry) {
    return !entry.task && entry.event.eventType != AURenderEventType::MIDI;
}

} // namespace

void EventQueue::add(Entry entry) {
    entry.number = added_++;
    entries_.push_back(std::move(entry));
    isSorted_ = false;
}

/// All at a time: a file may bring a million entries, lane after lane.
void EventQueue::sort() {
    if (std::exchange(isSorted_, true)) return;
    std::sort(entries_.begin() + static_cast<std::ptrdiff_t>(taken_), entries_.end(),
              [](const Entry& a, const Entry& b) {
                  return std::pair(a.frame, a.number) < std::pair(b.frame, b.number);
              });
}

std::optional<std::uint64_t> EventQueue::nextCut() {
    sort();
    if (isEmpty()) return std::nullopt;
    return cutOf(entries_[taken_]);
}

std::span<EventQueue::Entry> EventQueue::takeDue(std::uint64_t frame) {
    sort();
    const std::size_t first = taken_;
    const auto isDue = [&] { return taken_ < entries_.size() && cutOf(entries_[taken_]) <= frame; };
    if (isDue()) ++taken_;
    if (taken_ > first && isParameter(entries_[first]))
        while (isDue() && isParameter(entries_[taken_])) ++taken_;
    return std::span(entries_).subspan(first, taken_ - first);
}

std::vector<EventQueue::Entry> EventQueue::takeAll() {
    endBlock(0);
    sort();
    return std::exchange(entries_, {});
}

void EventQueue::endBlock(std::uint32_t frames) {
    entries_.erase(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(taken_));
    taken_ = added_ = 0;
    for (Entry& entry : entries_) {
        entry.frame -= std::min(entry.frame, frames);
        entry.number = added_++; // several may now stand at frame 0: their order stays
    }
}

} // namespace zephyra
