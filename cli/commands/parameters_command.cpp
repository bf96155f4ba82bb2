#include "cli/commands/commands.h"

#include "audiounit/control_text.h"
#include "main_view/audio_unit_view_controller.h"
#include "platform/text/text_numbers.h"

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>

namespace zephyra {

namespace {

const char* unitName(AudioUnitParameterUnit unit) {
    switch (unit) {
    case AudioUnitParameterUnit::generic:
        return "Generic";
    case AudioUnitParameterUnit::boolean:
        return "Boolean";
    case AudioUnitParameterUnit::percent:
        return "Percent";
    case AudioUnitParameterUnit::seconds:
        return "Seconds";
    case AudioUnitParameterUnit::phase:
        return "Phase";
    case AudioUnitParameterUnit::rate:
        return "Rate";
    case AudioUnitParameterUnit::hertz:
        return "Hertz";
    case AudioUnitParameterUnit::relativeSemiTones:
        return "RelativeSemiTones";
    case AudioUnitParameterUnit::pan:
        return "Pan";
    case AudioUnitParameterUnit::milliseconds:
        return "Milliseconds";
    }
    return "";
}

std::string flagText(std::uint32_t flags) {
    std::string text = flags & parameter_flag::readable ? "readable" : "hidden";
    if (flags & parameter_flag::writable) text += " writable";
    if (flags & parameter_flag::displayLogarithmic) text += " logarithmic";
    return text;
}

std::string textTable(const HostParameters& parameters) {
    std::string table = "     " + padded("name", 28) + padded("identifier", 19) +
                        padded("range", 17) + padded("unit", 19) + padded("default", 10) +
                        "flags\n";
    for (const auto& parameter : parameters._paramChildrens) {
        const AUParameter::Facts& facts = parameter->facts();
        const ControlRange& range = controlRange(static_cast<ControlId>(facts.address));
        table += facts.address < 10 ? " " : "";
        table += std::to_string(facts.address) + "   ";
        table += padded(facts.displayName, 28) + padded(facts.identifier, 19) +
                 padded(formatNumber(facts.minValue) + " to " + formatNumber(facts.maxValue), 17) +
                 padded(unitName(facts.unit), 19) + padded(formatNumber(range.defaultValue), 10) +
                 flagText(facts.flags) + "\n";
    }
    return table;
}

std::string jsonTable(const HostParameters& parameters) {
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const auto& parameter : parameters._paramChildrens) {
        const AUParameter::Facts& facts = parameter->facts();
        const ControlRange& range = controlRange(static_cast<ControlId>(facts.address));
        all.push_back({{"address", facts.address},
                       {"name", facts.displayName},
                       {"identifier", facts.identifier},
                       {"minimum", facts.minValue},
                       {"maximum", facts.maxValue},
                       {"unit", unitName(facts.unit)},
                       {"unitNumber", static_cast<std::uint32_t>(facts.unit)},
                       {"flags", facts.flags},
                       {"default", range.defaultValue},
                       {"linearDefault", linearFromDisplayed(range, range.defaultValue)}});
    }
    return all.dump(2) + "\n";
}

} // namespace

ExitCode runParameters(const CommandContext&, const ParametersRequest& request) {
    Instance instance;
    const AudioUnitViewController controller(instance);
    return printOut(request.json ? jsonTable(controller.parameters)
                                 : textTable(controller.parameters));
}

} // namespace zephyra
