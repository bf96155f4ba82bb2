#include "main_view/host_parameters.h"

#include <array>

namespace zephyra {

namespace {

using Member = std::shared_ptr<AUParameter> HostParameters::*;

// clang-format off
constexpr std::array<Member, kParameterCount> kMembers = {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) parameter
#define PARAMETER(unit, field, property, action) &HostParameters::property,
#define NO_PARAMETER
#include "stream/control_table.inl"
};
// clang-format on

std::shared_ptr<AUParameter> parameterFor(const ParameterRow& row, const Control* control,
                                          const std::string& suffix) {
    const auto* knob = dynamic_cast<const MOK_KNOB*>(control);
    return AUParameterTree::
        createParameterWithIdentifier_name_address_min_max_unit_unitName_flags_valueStrings_dependentParameters(
            parameterIdentifier(row, suffix), controlRange(row.id).name,
            static_cast<AUParameterAddress>(row.id), knob ? knob->minimumValue() : 0.0f,
            knob ? knob->maximumValue() : 1.0f, row.unit, std::nullopt, getFlags(control),
            std::nullopt, std::nullopt);
}

} // namespace

HostParameters::HostParameters(StreamControls& controls, MOK_KNOB& dryWet,
                               const std::string& suffix) {
    for (const ParameterRow& row : parameterTable()) {
        auto& member = this->*kMembers[_paramChildrens.size()];
        member = parameterFor(row, boundControl(row, controls, dryWet), suffix);
        _paramChildrens.push_back(member);
    }
}

Control* boundControl(const ParameterRow& row, StreamControls& controls, MOK_KNOB& dryWet) {
    if (row.binding == ParameterBinding::none) return nullptr;
    if (row.id == ControlId::dryWet) return &dryWet;
    return controls.control(row.id);
}

std::uint32_t getFlags(const Control* control) {
    const auto* knob = dynamic_cast<const MOK_KNOB_EXP*>(control);
    const bool logarithmic = knob && knob->minimumValue() > 0.0f;
    return parameter_flag::readable | parameter_flag::writable |
           (logarithmic ? parameter_flag::displayLogarithmic : 0u);
}

} // namespace zephyra
