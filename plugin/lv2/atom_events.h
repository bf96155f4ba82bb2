// AtomEvents: reads what a host sends through an atom port, whatever is wrong with it.
#pragma once

#include "platform/threads/realtime.h"
#include "plugin/lv2/uris.h"

#include <cstddef>
#include <cstdint>
#include <lv2/atom/atom.h>
#include <optional>

namespace zephyra {

/// What a time:Position says; numbers of any type are read, those that are not finite are not
/// there. Beats are of the meter's lower number.
struct Lv2Position {
    std::optional<double> bar = {}, barBeat = {}, beat = {}, beatUnit = {}, beatsPerBar = {},
                          beatsPerMinute = {}, frame = {}, speed = {};
};

/// One event: MIDI while `midi` is not null, else a position.
struct AtomEvent {
    std::uint32_t frame = 0; ///< in the block, never before the event in front of it
    const std::uint8_t* midi = nullptr;
    std::size_t midiLength = 0;
    Lv2Position position = {};
};

/// Walks through one block's events in their order. What is of no known kind, or reaches beyond its
/// container, is left out; sizes are believed only as far as they lie inside the container's. The
/// host's memory must stay until the walk ends. RENDER.
class AtomEvents {
public:
    /// sequence may be null, or of any type: no events.
    AtomEvents(const LV2_Atom_Sequence* sequence, const Lv2Uris& uris) ZEPHYRA_NONBLOCKING;

    /// The next one; none behind the last.
    std::optional<AtomEvent> next() ZEPHYRA_NONBLOCKING;

private:
    const Lv2Uris& uris_;
    const std::uint8_t* at_ = nullptr;
    std::size_t left_ = 0; // bytes from there
    std::uint32_t frame_ = 0;
};

} // namespace zephyra
