// MappingPanel: what the panel of one control's assignment shows.
#pragma once

#include "controls/control.h"
#include "modulation/assignment.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace zephyra {

/// Plain data that a screen draws; the control manager fills it. MAIN.
struct MappingPanel {
    bool shown = false;
    Control* control = nullptr;       ///< the selected one; null while closed
    std::size_t currentIndexPath = 0; ///< its record's position
    std::string information;          ///< "LFO Assigned for '...'" or empty
    std::int64_t segment = 0;         ///< of the type selector; beyond it for unknown types
    std::string sliderTitle; ///< "Scrub Velocity", "Low Frequency Oscillator in Hz" or empty
    double slider = 0.0;     ///< velocity or Hz
    double sliderMinimum = 0.0, sliderMaximum = 1.0;
    float minRange = 0.0f, maxRange = 1.0f, gravity = 0.0f; ///< fractions
    std::string realRange;                                  ///< "Widget Range min = ... max = ..."
    std::int64_t shape = 0;
    bool linked = false;
    int clockSub = 0;
    double clockSubMult = 1.0;
    float freeRateAlpha = 1.0f; ///< of the free rate's controls; 0.33 while linked
};

} // namespace zephyra
