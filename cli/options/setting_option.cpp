#include "cli/options/control_options.h"

#include "audiounit/control_text.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"

#include <optional>

namespace zephyra {

Result<ControlId> parseOptionControl(std::string_view name) {
    Result<ControlId> control = parseControlName(name);
    if (control) return control;
    constexpr std::string_view kEnvelopeWords = "envelope env window windowing shape grainshape";
    if (hasWord(kEnvelopeWords, plainName(name)))
        return Failure{"the envelope is chosen with --envelope NAME"};
    return Failure{control.message() + " (`zephyra help render` lists all)"};
}

Result<ControlSetting> parseSetting(std::string_view text) {
    const std::size_t sign = text.find('=');
    if (sign == std::string_view::npos || sign == 0)
        return Failure{inQuotes(text) + " is no setting; write NAME=VALUE, as in Density=80"};
    const Result<ControlId> control = parseOptionControl(text.substr(0, sign));
    if (!control) return Failure{control.message()};
    const Result<float> value = parseControlValue(control.value(), text.substr(sign + 1));
    if (!value) return Failure{value.message()};
    return ControlSetting{control.value(), value.value()};
}

Result<TimedSetting> parseTimedSetting(std::string_view text, double tempo) {
    const std::size_t colon = text.substr(0, text.find('=')).rfind(':'); // 1:30 has one as well
    const std::optional<TypedTime> time =
        colon == std::string_view::npos ? std::nullopt : parseTime(text.substr(0, colon));
    if (!time)
        return Failure{inQuotes(text) +
                       " is no setting at a time; write TIME:NAME=VALUE, as in 2.5:Pitch=7, "
                       "1:30:Pitch=7 or, in beats, 8b:Pitch=7"};
    const Result<ControlSetting> setting = parseSetting(text.substr(colon + 1));
    if (!setting) return Failure{setting.message()};
    return TimedSetting{time->seconds(tempo), setting.value()};
}

} // namespace zephyra
