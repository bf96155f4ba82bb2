#include "cli/options/lfo_option.h"

#include "audiounit/control_text.h"
#include "cli/options/key_values.h"
#include "controls/note_values.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace zephyra {

namespace {

constexpr std::array<std::string_view, 8> kKeys = {"shape", "hz",  "link",    "mult",
                                                   "min",   "max", "gravity", "phase"};
constexpr const char* kRange = "a fraction of the control's range from 0 to 1";

/// Knobs that turn without steps, and the scan. Fades are lengths of time, which nothing hears
/// while they change.
bool canHaveLfo(ControlId id) {
    return controlRange(id).kind == ControlKind::continuous && id != ControlId::fadeIn &&
           id != ControlId::fadeOut;
}

Complaint readShape(const KeyValues& keys, LfoShape& shape) {
    const auto typed = keys.find("shape");
    if (!typed) return {};
    std::vector<std::string_view> names;
    for (const LfoShapeEntry& entry : kLfoShapes) names.emplace_back(entry.name);
    const std::string_view nearest = nearestName(*typed, names);
    if (plainName(nearest) != plainName(*typed))
        return Failure{"there is no shape " + inQuotes(*typed) + "; the nearest is " +
                       inQuotes(nearest) +
                       " (of sine, square, v, rise, fall, random, random_interp)"};
    shape = static_cast<LfoShape>(std::find(names.begin(), names.end(), nearest) - names.begin());
    return {};
}

/// Its rate in Hz, or linked to the host's tempo.
Complaint readRate(const KeyValues& keys, LfoOption& lfo) {
    const auto link = keys.find("link");
    if (link && keys.find("hz"))
        return Failure{"hz is a rate of its own and link follows the tempo; leave one out"};
    if (!link && keys.find("mult"))
        return Failure{"mult lengthens the note value of link; add link=NOTE, as in link=1/4"};
    std::optional<double> hz, mult;
    if (auto wrong =
            keys.readNumber("hz", kLowestLfoRate, kHighestLfoRate, "Hz from 0.016 to 24", hz))
        return wrong;
    if (auto wrong = keys.readNumber("mult", LfoWidgetWrapper::kLeastMult,
                                     LfoWidgetWrapper::kMostMult, "1/64 (0.015625) to 64", mult))
        return wrong;
    lfo.hz = hz.value_or(lfo.hz);
    lfo.mult = mult.value_or(lfo.mult);
    if (!link) return {};
    const Result<float> note = parseControlValue(ControlId::leftSubdivision, *link);
    if (!note)
        return wrongValue("link", std::string(*link),
                          "one of the note values " +
                              rangeText(controlRange(ControlId::leftSubdivision)) + ", as in 1/8T");
    lfo.link = static_cast<int>(note.value());
    return {};
}

Complaint readSweep(const KeyValues& keys, LfoOption& lfo) {
    for (const auto& [key, value] : {std::pair("min", &lfo.min), std::pair("max", &lfo.max)})
        if (auto wrong = keys.readNumber(key, 0, 1, kRange, *value)) return wrong;
    if (auto wrong = keys.readNumber("gravity", 0, 1, "0 (at once) to 1 (slowest)", lfo.gravity))
        return wrong;
    return keys.readNumber("phase", 0, 1, "a fraction of the cycle from 0 to 1", lfo.phase);
}

} // namespace

Result<LfoOption> parseLfo(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (text.substr(0, colon).find('=') != std::string_view::npos)
        return Failure{"the control comes before a colon, as in Density:hz=0.5,max=0.8"};
    const Result<ControlId> control = parseControlName(text.substr(0, colon));
    if (!control) return Failure{control.message()};
    if (!canHaveLfo(control.value()))
        return Failure{"an LFO moves what turns without steps, and the scan, not " +
                       std::string(controlRange(control.value()).name)};
    const Result<KeyValues> keys = KeyValues::read(
        colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1), kKeys);
    if (!keys) return Failure{keys.message()};
    LfoOption lfo{.control = control.value()};
    if (auto wrong = readShape(keys.value(), lfo.shape)) return std::move(*wrong);
    if (auto wrong = readRate(keys.value(), lfo)) return std::move(*wrong);
    if (auto wrong = readSweep(keys.value(), lfo)) return std::move(*wrong);
    return lfo;
}

void applyLfo(const LfoOption& option, LfoWidgetWrapper& wrapper) {
    wrapper.setMinRange(option.min);
    wrapper.setMaxRange(option.max);
    wrapper.setGravity(option.gravity);
    if (option.link) {
        wrapper.setClockSub(*option.link);
        wrapper.setClockSubMult(option.mult);
    } else {
        wrapper.setHz(option.hz);
    }
    wrapper.setLinkIsEnabled(option.link.has_value());
    wrapper.setLfoShapeFromWrapper(option.shape); // finds the phase for this range
    if (option.phase) wrapper.setPhase(*option.phase);
}

std::string lfoText(const LfoWidgetWrapper& wrapper) {
    auto shape = static_cast<std::size_t>(wrapper.currentLFO.shape());
    if (shape >= kLfoShapes.size()) shape = kLfoLineRise; // as it sounds
    std::string text = std::string("LFO ") + kLfoShapes[shape].name;
    if (!wrapper.linkIsEnabled()) return text + " " + formatShort(wrapper.freeHz()) + " Hz";
    text += std::string(" ") + kNoteValues[static_cast<std::size_t>(wrapper.clockSub())].name;
    return wrapper.clockSubMult() == 1.0 ? text
                                         : text + " x " + formatShort(wrapper.clockSubMult());
}

} // namespace zephyra
