#include "audiounit/parameter_table.h"

#include <array>
#include <optional>

namespace zephyra {

namespace {

// clang-format off
constexpr std::array<ParameterRow, kControlCount> kRows = {{
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) {ControlId::id, held, parameter},
#define KNOB(type, member) ParameterBinding::control
#define TOGGLE(member) ParameterBinding::control
#define BUTTON(member) ParameterBinding::none
#define OWN_KNOB(type, member) ParameterBinding::control
#define NO_CONTROL ParameterBinding::none
#define PARAMETER(unit, field, property, action) AudioUnitParameterUnit::unit, &audio_struct::field, action
#define NO_PARAMETER {}, {}, ""
#include "stream/control_table.inl"
}};

constexpr bool fits(std::optional<AudioUnitParameterUnit> unit, bool isSwitch) {
    return !unit || (*unit == AudioUnitParameterUnit::boolean) == isSwitch;
}

#define CONTROL(id, name, values, saved, moved, held, handler, parameter) \
    static_assert(fits(parameter, values), name ": a switch, and nothing else, has the unit boolean");
#define RANGE(minimum, maximum, value, unit) false
#define CURVE(minimum, maximum, value, unit, stepness) false
#define COUNT(minimum, maximum, value) false
#define SWITCH(value) true
#define CHOICE(last, value) false
#define PARAMETER(unit, field, property, action) AudioUnitParameterUnit::unit
#define NO_PARAMETER std::nullopt
#include "stream/control_table.inl"
// clang-format on

} // namespace

std::span<const ParameterRow, kParameterCount> parameterTable() noexcept {
    return std::span(kRows).first<kParameterCount>();
}

std::string parameterIdentifier(const ParameterRow& row, const std::string& suffix) {
    const ControlRange& range = controlRange(row.id);
    return row.binding == ParameterBinding::none ? range.name : controlChannel(range, suffix);
}

void storeParameter(audio_struct& record, AUParameterAddress address,
                    AUValue value) ZEPHYRA_NONBLOCKING {
    if (address >= kParameterCount) return;
    const ParameterField& field = kRows[address].field;
    if (const auto* number = std::get_if<Relaxed<float> audio_struct::*>(&field))
        (record.**number).store(value);
    else if (const auto* flag = std::get_if<Relaxed<bool> audio_struct::*>(&field))
        (record.**flag).store(value != 0.0f);
}

AUValue loadParameter(const audio_struct& record, AUParameterAddress address) ZEPHYRA_NONBLOCKING {
    if (address >= kParameterCount) return 0.0f;
    const ParameterField& field = kRows[address].field;
    if (const auto* number = std::get_if<Relaxed<float> audio_struct::*>(&field))
        return (record.**number).load();
    const auto* flag = std::get_if<Relaxed<bool> audio_struct::*>(&field);
    return flag && (record.**flag).load() ? 1.0f : 0.0f;
}

} // namespace zephyra
