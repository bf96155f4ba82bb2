// LearnOption: a MIDI controller that moves one control, as typed after --learn.
#pragma once

#include "modulation/midi_binding.h"
#include "platform/text/result.h"
#include "stream/control_ranges.h"

#include <string_view>

namespace zephyra {

struct LearnOption {
    ControlId control;
    MidiBinding binding = {}; ///< without its control, which only the running system has
};

/// Reads SOURCE=CONTROL,KEY=VALUE,... where SOURCE is cc:N (0..119), cc14:N (0..31), bend, note:N
/// or pressure and the keys are min, max, curve, channel, takeover and relative. The failure says
/// what would be right.
Result<LearnOption> parseLearn(std::string_view text);

} // namespace zephyra
