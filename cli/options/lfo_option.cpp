#include "cli/options/control_options.h"

#include "audiounit/control_text.h"
#include "cli/options/option_values.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace zephyra {

namespace {

constexpr std::array<std::string_view, 8> kKeys = {"shape", "hz",  "link",    "mult",
                                                   "min",   "max", "gravity", "phase"};
constexpr auto kOtherKeys = std::to_array<OtherWords>({
    {"rate speed freq frequency f", "hz"},
    {"sync note division beat tempo", "link"},
    {"type wave waveform form", "shape"},
    {"from low lo minimum", "min"},
    {"to high hi maximum", "max"},
    {"depth amount range amp amplitude", "min and max, the two ends of the way"},
    {"smooth smoothing lag slew glide inertia", "gravity"},
    {"multiplier multiply times", "mult"},
    {"offset start", "phase"},
});
constexpr auto kOtherShapes = std::to_array<OtherWords>({
    {"sin sinus sinusoid", "sine"},
    {"pulse rectangle rect sqr", "square"},
    {"triangle tri", "v"},
    {"saw sawtooth ramp rampup sawup up", "rise"},
    {"rampdown sawdown reversesaw down", "fall"},
    {"sampleandhold samplehold sh snh noise rnd", "random"},
    {"smoothrandom randomsmooth smooth drift wander randominterpolated", "random_interp"},
});
constexpr const char* kRange = "a fraction of the control's range from 0 to 1";

Complaint readShape(const KeyValues& keys, LfoShape& shape) {
    const auto typed = keys.find("shape");
    if (!typed) return {};
    std::vector<std::string_view> names;
    for (const LfoShapeEntry& entry : kLfoShapes) names.emplace_back(entry.name);
    const auto found = std::ranges::find(names, plainName(*typed),
                                         [](std::string_view name) { return plainName(name); });
    if (found == names.end())
        return Failure{"there is no shape " + inQuotes(*typed) + "; " +
                       rightName(*typed, names, kOtherShapes) +
                       " (of sine, square, v, rise, fall, random, random_interp)"};
    shape = static_cast<LfoShape>(found - names.begin());
    return {};
}

/// "Pan:sine" and "Pan:2": a shape or a rate without its key in front of all else.
Complaint checkKeyed(std::string_view text) {
    const std::string first(text.substr(0, text.find(',')));
    const auto isShape = [plain = plainName(first)](const LfoShapeEntry& entry) {
        return plainName(entry.name) == plain;
    };
    if (std::ranges::any_of(kLfoShapes, isShape))
        return Failure{inQuotes(first) + " is a shape; write shape=" + first};
    if (parseIn("Hz", first))
        return Failure{inQuotes(first) + " has no key; write hz=" + first + " for a rate"};
    return {};
}

/// Its rate in Hz, or linked to the host's tempo.
Complaint readRate(const KeyValues& keys, LfoRequest& lfo) {
    const auto link = keys.find("link");
    if (link && keys.find("hz"))
        return Failure{"hz is a rate of its own and link follows the tempo; leave one out"};
    if (!link && keys.find("mult"))
        return Failure{"mult lengthens the note value of link; add link=NOTE, as in link=1/4"};
    std::optional<double> hz, mult;
    if (auto wrong =
            keys.readNumber("hz", "Hz", kLowestLfoRate, kHighestLfoRate, "Hz from 0.016 to 24", hz))
        return wrong;
    if (auto wrong = keys.readNumber("mult", "x", LfoWidgetWrapper::kLeastMult,
                                     LfoWidgetWrapper::kMostMult, "1/64 (0.015625) to 64", mult))
        return wrong;
    lfo.hz = hz.value_or(lfo.hz);
    lfo.mult = mult.value_or(lfo.mult);
    if (!link) return {};
    const Result<float> note = parseControlValue(ControlId::leftSubdivision, *link);
    if (!note)
        return wrongValue("link", *link,
                          "one of the note values " +
                              rangeText(controlRange(ControlId::leftSubdivision)) + ", as in 1/8T");
    lfo.link = static_cast<int>(note.value());
    return {};
}

Complaint readSweep(const KeyValues& keys, LfoRequest& lfo) {
    for (const auto& [key, value] : {std::pair("min", &lfo.min), std::pair("max", &lfo.max)})
        if (auto wrong = keys.readNumber(key, "x", 0, 1, kRange, *value)) return wrong;
    if (auto wrong =
            keys.readNumber("gravity", "x", 0, 1, "0 (at once) to 1 (slowest)", lfo.gravity))
        return wrong;
    return keys.readNumber("phase", "x", 0, 1, "a fraction of the cycle from 0 to 1", lfo.phase);
}

} // namespace

Result<LfoRequest> parseLfo(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (text.substr(0, colon).find('=') != std::string_view::npos)
        return Failure{"the control comes before a colon, as in Density:hz=0.5,max=0.8"};
    const Result<ControlId> control = parseOptionControl(text.substr(0, colon));
    if (!control) return Failure{control.message()};
    if (!canHaveLfo(control.value()))
        return Failure{"an LFO moves what turns without steps, and the scan, not " +
                       std::string(controlRange(control.value()).name)};
    if (colon != std::string_view::npos)
        if (auto wrong = checkKeyed(text.substr(colon + 1))) return std::move(*wrong);
    const Result<KeyValues> keys = KeyValues::read(
        colon == std::string_view::npos ? std::string_view() : text.substr(colon + 1), kKeys,
        kOtherKeys);
    if (!keys) return Failure{keys.message()};
    LfoRequest lfo{.control = control.value()};
    if (auto wrong = readShape(keys.value(), lfo.shape)) return std::move(*wrong);
    if (auto wrong = readRate(keys.value(), lfo)) return std::move(*wrong);
    if (auto wrong = readSweep(keys.value(), lfo)) return std::move(*wrong);
    return lfo;
}

} // namespace zephyra
