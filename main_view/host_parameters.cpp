#include "main_view/host_parameters.h"

#include <array>

namespace zephyra {

namespace {

using Member = std::shared_ptr<AUParameter> HostParameters::*;

constexpr std::array<Member, kParameterCount> kMembers = {
    &HostParameters::_scrubParameter,          &HostParameters::_volume_Parameter,
    &HostParameters::_pan_Parameter,           &HostParameters::_drywetParameter,
    &HostParameters::_width_Parameter,         &HostParameters::_density_Parameter,
    &HostParameters::_rnd_density_Parameter,   &HostParameters::_length_Parameter,
    &HostParameters::_rnd_len_Parameter,       &HostParameters::_pitch_Parameter,
    &HostParameters::_rnd_pitch_Parameter,     &HostParameters::_scanning_Parameter,
    &HostParameters::_jitter_Parameter,        &HostParameters::_echoSwitch_Parameter,
    &HostParameters::_echoDelayLeft_Parameter, &HostParameters::_echoDelayRight_Parameter,
    &HostParameters::_echoGainLeft_Parameter,  &HostParameters::_echoGainRight_Parameter,
    &HostParameters::_rmSwitch_Parameter,      &HostParameters::_rmFrequency_Parameter,
    &HostParameters::_rmAmount_Parameter,      &HostParameters::_playStop_Parameter,
    &HostParameters::_freezeToggle_Parameter,  &HostParameters::_enableLIVE_Parameter,
};

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
    if (MOK_KNOB* knob = controls.knob(row.id)) return knob;
    return controls.toggle(row.id);
}

std::uint32_t getFlags(const Control* control) {
    const auto* knob = dynamic_cast<const MOK_KNOB_EXP*>(control);
    const bool logarithmic = knob && knob->minimumValue() > 0.0f;
    return parameter_flag::readable | parameter_flag::writable |
           (logarithmic ? parameter_flag::displayLogarithmic : 0u);
}

} // namespace zephyra
