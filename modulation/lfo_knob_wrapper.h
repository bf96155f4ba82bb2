// MOK_KNOB_LFO_CONTROL_WRAPPER: an LFO with the knob or slider it turns.
#pragma once

#include "modulation/knob_mover.h"
#include "modulation/lfo_widget_wrapper.h"

namespace zephyra {

/// MAIN.
class MOK_KNOB_LFO_CONTROL_WRAPPER final : public LfoWidgetWrapper {
public:
    MOK_KNOB_LFO_CONTROL_WRAPPER(MOK_KNOB& knob, double bpm, RandomSource& random)
        : LfoWidgetWrapper(knob, std::make_unique<KnobMover>(knob), bpm, random) {}
};

} // namespace zephyra
