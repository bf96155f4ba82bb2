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
    const auto waiting = entries_.begin() + static_cast<std::ptrdiff_t>(taken_);
    const auto place =
        std::upper_bound(waiting, entries_.end(), entry.frame,
                         [](std::uint32_t frame, const Entry& e) { return frame < e.frame; });
    entries_.insert(place, std::move(entry));
}

std::optional<std::uint64_t> EventQueue::nextCut() const {
    if (taken_ == entries_.size()) return std::nullopt;
    return cutOf(entries_[taken_]);
}

std::span<EventQueue::Entry> EventQueue::takeDue(std::uint64_t frame) {
    const std::size_t first = taken_;
    const auto isDue = [&] { return taken_ < entries_.size() && cutOf(entries_[taken_]) <= frame; };
    if (isDue()) ++taken_;
    if (taken_ > first && isParameter(entries_[first]))
        while (isDue() && isParameter(entries_[taken_])) ++taken_;
    return std::span(entries_).subspan(first, taken_ - first);
}

void EventQueue::endBlock(std::uint32_t frames) {
    entries_.erase(entries_.begin(), entries_.begin() + static_cast<std::ptrdiff_t>(taken_));
    taken_ = 0;
    for (Entry& entry : entries_) entry.frame -= std::min(entry.frame, frames);
}

void EventQueue::clear() {
    entries_.clear();
    taken_ = 0;
}

} // namespace zephyra
