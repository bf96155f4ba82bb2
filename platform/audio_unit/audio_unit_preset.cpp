#include "platform/audio_unit/audio_unit_preset.h"

#include <algorithm>
#include <bit>
#include <cstddef>

namespace zephyra {

namespace {

void appendBigEndian(PropertyData::Bytes& data, std::uint32_t word) {
    for (const int shift : {24, 16, 8, 0}) data.push_back(static_cast<std::byte>(word >> shift));
}

PropertyData parameterData(const AUParameterTree& tree) {
    auto parameters = tree.children();
    std::ranges::sort(parameters, {}, [](const auto& parameter) { return parameter->address(); });
    PropertyData::Bytes data;
    for (const auto& parameter : parameters) {
        appendBigEndian(data, static_cast<std::uint32_t>(parameter->address()));
        appendBigEndian(data, std::bit_cast<std::uint32_t>(parameter->value()));
    }
    return data;
}

} // namespace

PropertyDictionary defaultFullState(const AudioComponentDescription& description,
                                    const AUParameterTree* tree) {
    const auto number = [](FourCharCode code) { return PropertyValue(std::int64_t{code}); };
    return {{"type", number(description.componentType)},
            {"subtype", number(description.componentSubType)},
            {"manufacturer", number(description.componentManufacturer)},
            {"version", 0},
            {"data", tree ? parameterData(*tree) : PropertyData()}};
}

} // namespace zephyra
