// LfoOption: an LFO on one control, as typed after --lfo.
#pragma once

#include "modulation/lfo.h"
#include "modulation/lfo_widget_wrapper.h"
#include "platform/text/result.h"
#include "stream/control_ranges.h"

#include <optional>
#include <string>
#include <string_view>

namespace zephyra {

struct LfoOption {
    ControlId control;
    LfoShape shape = kLfoSine;
    double hz = LfoWidgetWrapper::kFirstRate;
    std::optional<int> link = {};     ///< position in kNoteValues; none: hz counts
    double mult = 1.0;                ///< so many of them make a cycle
    float min = 0.0f, max = 1.0f;     ///< fractions of the linear range; min may exceed max
    float gravity = 0.0f;             ///< 0..1
    std::optional<double> phase = {}; ///< 0..1; none: so that nothing jumps
};

/// Reads CONTROL, or CONTROL:KEY=VALUE,... with the keys shape, hz or link, mult, min, max,
/// gravity, phase. The failure says what would be right.
Result<LfoOption> parseLfo(std::string_view text);

/// Gives the wrapper of a control what was asked for.
void applyLfo(const LfoOption& option, LfoWidgetWrapper& wrapper);

/// "LFO sine 0.25 Hz", "LFO v 1/8T x 2".
std::string lfoText(const LfoWidgetWrapper& wrapper);

} // namespace zephyra
