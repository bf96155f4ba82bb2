// EventQueue: what a host hands over at frames to come, in the order in which it acts.
#pragma once

#include "platform/audio_unit/audio_unit_events.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace zephyra {

/// Frames count from the present block's start. An entry acts where the block may be cut: at the
/// first multiple of kGrid at or after its frame, or where the block after it starts. Entries of
/// one frame act in the order of the calls. MAIN.
class EventQueue {
public:
    static constexpr std::uint32_t kGrid = 16; ///< frames, a third of a millisecond

    struct Entry {
        std::uint32_t frame;
        AURenderEvent event = {};
        std::vector<std::uint8_t> bytes = {}; ///< of MIDI, all of them
        std::function<void()> task = {};      ///< in an event's place; else empty
        std::size_t number = 0;               ///< which of one frame acts first
    };

    void add(Entry entry);
    bool isEmpty() const { return taken_ == entries_.size(); }

    /// Where the next entry acts, a multiple of kGrid; none without one.
    std::optional<std::uint64_t> nextCut();

    /// Takes what acts together at frame or before: parameters that follow each other, one MIDI
    /// message, or one task; empty when nothing is due. So nothing overtakes another on the way to
    /// MAIN. Valid until the next call.
    std::span<Entry> takeDue(std::uint64_t frame);

    /// The present block ends after so many frames; what has not acted counts from the next one's
    /// start, in the order that it had.
    void endBlock(std::uint32_t frames);

    void clear() { *this = {}; }
    /// What waits, in order; then nothing does.
    std::vector<Entry> takeAll();

private:
    void sort();

    std::vector<Entry> entries_;
    std::size_t taken_ = 0, added_ = 0;
    bool isSorted_ = true;
};

} // namespace zephyra
