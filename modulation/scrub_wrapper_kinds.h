// ScrubKnobWidgetWrapper, ScrubSliderWidgetWrapper, ScrubPadWidgetWrapper and
// ScrubKeyboardWidgetWrapper: what a finger's vertical movement can move.
#pragma once

#include "modulation/keyboard_mover.h"
#include "modulation/knob_mover.h"
#include "modulation/pad_mover.h"
#include "modulation/scrub_widget_wrapper.h"

namespace zephyra {

/// MAIN.
class ScrubKnobWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubKnobWidgetWrapper(MOK_KNOB& knob, bool secondFinger)
        : ScrubWidgetWrapper(knob, std::make_unique<KnobMover>(knob), secondFinger) {}
};

/// A slider is a knob that looks otherwise.
using ScrubSliderWidgetWrapper = ScrubKnobWidgetWrapper;

/// Moves the pad's y. MAIN.
class ScrubPadWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubPadWidgetWrapper(MOK_PAD& pad, bool secondFinger)
        : ScrubWidgetWrapper(pad, std::make_unique<PadMover>(pad), secondFinger) {}
};

/// Plays one key after the other, until the finger ends. MAIN.
class ScrubKeyboardWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubKeyboardWidgetWrapper(MOK_Keyboard& keyboard, bool secondFinger)
        : ScrubWidgetWrapper(keyboard, std::make_unique<KeyboardMover>(keyboard), secondFinger) {}

    void end() override { stop(); }
};

} // namespace zephyra
