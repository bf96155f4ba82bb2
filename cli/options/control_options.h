// parseSetting and its kin: what is to happen to a control, as typed after --set, --at, --lfo and
// --learn.
#pragma once

#include "platform/text/result.h"
#include "rendering/render_request.h"

#include <string_view>

namespace zephyra {

// Each failure says what would be right. Any thread but RENDER.

/// The control that name means, of those that options set.
Result<ControlId> parseOptionControl(std::string_view name);

/// Reads NAME=VALUE, see control_text.h.
Result<ControlSetting> parseSetting(std::string_view text);

/// Reads TIME:NAME=VALUE; tempo: that of beats, in beats per minute.
Result<TimedSetting> parseTimedSetting(std::string_view text, double tempo);

/// Reads CONTROL, or CONTROL:KEY=VALUE,... with the keys shape, hz or link, mult, min, max,
/// gravity, phase.
Result<LfoRequest> parseLfo(std::string_view text);

/// Reads SOURCE=CONTROL,KEY=VALUE,... where SOURCE is cc:N (0..119), cc14:N (0..31), bend, note:N
/// or pressure and the keys are min, max, curve, channel, takeover and relative.
Result<LearnRequest> parseLearn(std::string_view text);

} // namespace zephyra
