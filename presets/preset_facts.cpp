#include "presets/preset_facts.h"

#include "controls/state_keys.h"
#include "stream/control_ranges.h"

#include <algorithm>
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

bool isOn(const PropertyDictionary& record, ControlId control) {
    const bool* const on = valueOf<bool>(record, ofStream(controlRange(control).channel));
    return on && *on;
}

bool isLinked(const PropertyValue& assignment) {
    const auto* const entry = assignment.as<PropertyDictionary>();
    const auto* const state =
        entry ? valueOf<PropertyDictionary>(*entry, assignment_key::kWrapperState) : nullptr;
    const bool* const linked = state ? valueOf<bool>(*state, wrapper_key::kLinkSwitch) : nullptr;
    return linked && *linked;
}

bool hasLinkedLfo(const PropertyDictionary& record) {
    const auto* const all = valueOf<PropertyArray>(record, state_key::kControlAssignments);
    return all && std::ranges::any_of(*all, isLinked);
}

} // namespace

PresetFacts presetFacts(const PropertyDictionary& record) {
    PresetFacts facts;
    if (const auto* const sample =
            valueOf<PropertyDictionary>(record, ofStream(state_key::kSample)))
        facts.sample = sampleName(*sample);
    facts.listensToInput = isOn(record, ControlId::live);
    facts.followsTempo = isOn(record, ControlId::scanSync) || isOn(record, ControlId::echoSync) ||
                         hasLinkedLfo(record);
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
