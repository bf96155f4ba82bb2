#include "cli/options/control_options.h"

#include "cli/options/option_values.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/text_numbers.h"

#include <array>

namespace zephyra {

namespace {

constexpr std::array<std::string_view, 6> kKeys = {"min",     "max",      "curve",
                                                   "channel", "takeover", "relative"};
constexpr const char* kRange = "a fraction of the control's range from 0 to 1";
constexpr const char* kForm =
    "write SOURCE=CONTROL, where SOURCE is cc:N, cc14:N, bend, note:N or pressure, as in "
    "cc:1=Density";

constexpr auto kOtherKeys = std::to_array<OtherWords>({
    {"from low lo minimum", "min"},
    {"to high hi maximum", "max"},
    {"exponent exp power", "curve"},
    {"ch chan midichannel", "channel"},
    {"pickup mode soft", "takeover"},
    {"add", "relative"},
});
constexpr auto kOtherSources = std::to_array<OtherWords>({
    {"control controller ctrl knob fader", "cc:N, with the controller's number"},
    {"modwheel modulation wheel mod", "cc:1"},
    {"pedal sustain", "cc:64"},
    {"expression", "cc:11"},
    {"pitchbend pitchwheel pb", "bend"},
    {"aftertouch channelpressure at touch", "pressure"},
    {"velocity vel key", "note:N, with the key's number"},
});

struct SourceName {
    std::string_view name;
    MidiSource source;
    int highest; ///< number; below 0 where it has none
};
constexpr std::array<SourceName, 5> kSources = {
    {{"cc", MidiSource::controller, 119}, // above are modes
     {"cc14", MidiSource::controller14, 31},
     {"bend", MidiSource::pitchBend, -1},
     {"note", MidiSource::note, 127},
     {"pressure", MidiSource::channelPressure, -1}}};

Result<MidiTrigger> readTrigger(std::string_view text) {
    const std::size_t colon = text.find(':');
    const std::string name = plainName(text.substr(0, colon));
    for (const SourceName& known : kSources) {
        if (name != known.name) continue;
        const bool numbered = colon != std::string_view::npos;
        if (known.highest < 0) {
            if (numbered) return Failure{name + " has no number; write " + name + "=CONTROL"};
            return MidiTrigger{.source = known.source};
        }
        const auto number = numbered ? parseWhole(text.substr(colon + 1)) : std::nullopt;
        if (!number || *number > static_cast<std::uint64_t>(known.highest))
            return Failure{name + " needs a number from 0 to " + std::to_string(known.highest) +
                           ", as in " + name + ":1=CONTROL"};
        return MidiTrigger{.source = known.source, .number = static_cast<int>(*number)};
    }
    std::string right = kForm;
    for (const OtherWords& row : kOtherSources)
        if (hasWord(row.words, name)) right = "it is called " + std::string(row.name);
    return Failure{"there is no MIDI source " + inQuotes(text) + "; " + right};
}

Complaint readChannel(const KeyValues& keys, int& channel) {
    const auto typed = keys.find("channel");
    if (!typed || plainName(*typed) == "any") return {};
    const auto number = parseWhole(*typed);
    if (!number || *number < 1 || *number > 16)
        return wrongValue("channel", *typed, "1 to 16, or any");
    channel = static_cast<int>(*number);
    return {};
}

/// Whether a key says the first word rather than the second.
Complaint readWord(const KeyValues& keys, const char* key, const char* first, const char* second,
                   bool& isFirst) {
    const auto typed = keys.find(key);
    if (!typed) return {};
    const std::string word = plainName(*typed);
    isFirst = word == first;
    if (isFirst || word == second) return {};
    return wrongValue(key, *typed, std::string(first) + " or " + second);
}

Complaint readKeys(const KeyValues& keys, MidiBinding& binding) {
    for (const auto& [key, value] :
         {std::pair("min", &binding.min), std::pair("max", &binding.max)})
        if (auto wrong = keys.readNumber(key, "x", 0, 1, kRange, *value)) return wrong;
    if (auto wrong =
            keys.readNumber("curve", "", 0.1, 10, "an exponent from 0.1 to 10", binding.curve))
        return wrong;
    if (auto wrong = readChannel(keys, binding.trigger.channel)) return wrong;
    bool jump = true; // a file has no hand that stands elsewhere
    if (auto wrong = readWord(keys, "takeover", "jump", "pickup", jump)) return wrong;
    binding.takeover = jump ? MidiTakeover::jump : MidiTakeover::soft;
    return readWord(keys, "relative", "yes", "no", binding.relative);
}

} // namespace

Result<LearnRequest> parseLearn(std::string_view text) {
    const std::size_t comma = text.find(',');
    const std::string_view head = text.substr(0, comma);
    const std::size_t sign = head.find('=');
    if (sign == std::string_view::npos) return Failure{inQuotes(head) + ": " + kForm};
    const Result<MidiTrigger> trigger = readTrigger(head.substr(0, sign));
    if (!trigger) return Failure{trigger.message()};
    const Result<ControlId> control = parseOptionControl(head.substr(sign + 1));
    if (!control) return Failure{control.message()};
    const Result<KeyValues> keys = KeyValues::read(
        comma == std::string_view::npos ? std::string_view() : text.substr(comma + 1), kKeys,
        kOtherKeys);
    if (!keys) return Failure{keys.message()};
    LearnRequest learned{.control = control.value()};
    learned.binding.trigger = trigger.value();
    if (auto wrong = readKeys(keys.value(), learned.binding)) return std::move(*wrong);
    const bool turns = controlRange(learned.control).kind == ControlKind::continuous &&
                       learned.control != ControlId::scrubbingWave;
    if (learned.binding.relative && (trigger.value().source != MidiSource::pitchBend || !turns))
        return Failure{"relative=yes is for a bend that moves a knob, as in bend=Pitch"};
    return learned;
}

} // namespace zephyra
