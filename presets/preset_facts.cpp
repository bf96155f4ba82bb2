#include "presets/preset_facts.h"

#include "controls/state_keys.h"
#include "stream/control_ranges.h"

#include <filesystem>

namespace zephyra {

namespace {

template <typename Type>
const Type* valueOf(const PropertyDictionary& dictionary, std::string_view key) {
    const auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : found->second.as<Type>();
}

std::string sampleName(const PropertyDictionary& sample) {
    for (const char* key : {sample_key::kPath, sample_key::kRelativePath})
        if (const auto* const path = valueOf<std::string>(sample, key); path && !path->empty())
            return std::filesystem::path(*path).filename().string();
    return {};
}

} // namespace

PresetFacts presetFacts(const PropertyDictionary& record) {
    PresetFacts facts;
    if (const auto* const sample =
            valueOf<PropertyDictionary>(record, ofStream(state_key::kSample)))
        facts.sample = sampleName(*sample);
    const bool* const isOn = valueOf<bool>(record, ofStream(controlRange(ControlId::live).channel));
    facts.listensToInput = isOn && *isOn;
    facts.holdsSound =
        valueOf<PropertyDictionary>(record, ofStream(state_key::kCaptured)) != nullptr;
    return facts;
}

std::string soundText(const PresetFacts& facts) {
    if (facts.listensToInput) return "live input";
    if (!facts.sample.empty()) return facts.sample;
    return facts.holdsSound ? "captured sound" : "no sound";
}

} // namespace zephyra
