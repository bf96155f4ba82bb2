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

AUValue held(const ParameterRow& row, AUValue value) ZEPHYRA_NONBLOCKING {
    if (row.unit != AudioUnitParameterUnit::boolean) return value;
    return value != 0.0f ? 1.0f : 0.0f;
}

} // namespace

std::span<const ParameterRow, kParameterCount> parameterTable() noexcept {
    return std::span(kRows).first<kParameterCount>();
}

std::string parameterIdentifier(const ParameterRow& row, const std::string& suffix) {
    const ControlRange& range = controlRange(row.id);
    return row.binding == ParameterBinding::none ? range.name : controlChannel(range, suffix);
}

void storeParameter(audio_struct& record, AUParameterAddress address, AUValue value,
                    StateOrder::Number number) ZEPHYRA_NONBLOCKING {
    if (address < kParameterCount)
        (record.*kRows[address].field).store(held(kRows[address], value), number);
}

bool storeParameterUnlessSince(audio_struct& record, AUParameterAddress address, AUValue value,
                               StateOrder::Number number,
                               StateOrder::Number state) ZEPHYRA_NONBLOCKING {
    return address < kParameterCount &&
           (record.*kRows[address].field)
               .storeUnlessSince(held(kRows[address], value), number, state);
}

bool isParameterSince(const audio_struct& record, AUParameterAddress address,
                      StateOrder::Number state) ZEPHYRA_NONBLOCKING {
    return address < kParameterCount && (record.*kRows[address].field).isSince(state);
}

AUValue loadParameter(const audio_struct& record, AUParameterAddress address) ZEPHYRA_NONBLOCKING {
    return address < kParameterCount ? (record.*kRows[address].field).load() : 0.0f;
}

} // namespace zephyra
