// KnobFace: a knob as it looks at a moment.
#pragma once

#include "screens/model/path/knob_bond.h"
#include "screens/model/path/knob_text.h"

#include <optional>
#include <string>

namespace zephyra {

/// Plain data. Places are fractions of the turn, 0 at its left end, 1 at its right.
struct KnobFace {
    KnobText text;
    float arc = 0.0f;             ///< where it is; what moves by itself glides between its steps
    bool isBipolar = false;       ///< the arc is filled from the middle
    std::optional<float> setAt{}; ///< where it was set, while something else moves it
    std::optional<float> from{}, to{}; ///< how far that may go
    KnobMover by = KnobMover::none;
    std::string sign{};      ///< of MIDI
    bool drives = false;     ///< by moves it now
    bool isLearning = false; ///< waits for a MIDI controller to be moved
    bool isOff = false;      ///< its section is off
    bool isLocked = false;   ///< randomise leaves it alone
    bool isHeld = false;     ///< a hand is on it

    bool operator==(const KnobFace&) const = default;
};

/// What a window remembers of one knob from frame to frame, to know where it was set. MAIN.
class KnobMemory {
public:
    /// Of the knob of id at now, seconds on the window's clock.
    KnobFace read(AudioUnitViewController& view, ControlId id, double now);

private:
    void remember(const MOK_KNOB& knob, const KnobBond& bond);
    bool hostMoves(AudioUnitViewController& view, ControlId id, double now);
    float glide(float to, bool glides, double now);

    std::optional<float> setAt_;                // none where it was moved before the window knew it
    float glidesFrom_ = 0.0f, glidesTo_ = 0.0f; // what moves by itself, between two of its steps
    double glideBegan_ = 0.0;
    std::optional<std::uint32_t> hostMoves_;
    double hostMovesUntil_ = 0.0; // on the window's clock
};

/// "moves by LFO, sine, 0.7 Hz, -10.6 st to +17.3 st, set to 0 st": who moves the knob that looks
/// so now, for the foot; empty when nothing does. MAIN.
std::string knobMoverText(AudioUnitViewController& view, ControlId id, const KnobFace& face);

} // namespace zephyra
