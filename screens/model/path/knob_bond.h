// KnobBond: who moves a control besides hands, and how far it may go.
#pragma once

#include "main_view/audio_unit_view_controller.h"

#include <optional>
#include <string>

namespace zephyra {

enum class KnobMover { none, lfo, midi, host, scrub, tilt };

/// Of one control at a moment.
struct KnobBond {
    KnobMover by = KnobMover::none;
    std::string sign{}; ///< of MIDI, short: "CC1"
    /// The ends of the sweep, fractions of the linear range, the first may be the larger; none
    /// where there is no such range.
    std::optional<float> from{}, to{};
    bool drives = false;         ///< it moves the control now; else it waits, or stands
    std::optional<float> base{}; ///< of an LFO: where the control was set, 0..1
};

/// What the player assigned; automation by a host is no assignment. MAIN.
KnobBond bondOf(AudioUnitViewController& view, Control& control);

/// Moves the ends of the sweep; nothing where bondOf has none. What is not finite is refused, the
/// rest held to 0..1. MAIN.
void setBondRange(AudioUnitViewController& view, Control& control, float from, float to);

} // namespace zephyra
