// Saving and restoring of MidiManager.

#include "modulation/midi_manager.h"
#include "platform/lists/property_reader.h"

#include <algorithm>
#include <set>
#include <utility>

namespace zephyra {

namespace {

PropertyDictionary saved(const MidiBinding& binding) {
    return {{"name", assignmentName(*binding.control)},
            {"source", static_cast<std::int64_t>(binding.trigger.source)},
            {"number", binding.trigger.number},
            {"channel", binding.trigger.channel},
            {"min", binding.min},
            {"max", binding.max},
            {"curve", binding.curve},
            {"takeOver", static_cast<std::int64_t>(binding.takeOver)},
            {"relative", binding.relative}};
}

/// Numbers so far outside every range that nothing is lost when they are held here.
int wholeOr(PropertyReader& reader, std::string_view key, int missing) {
    return static_cast<int>(
        std::clamp<std::int64_t>(reader.whole(key).value_or(missing), -1000, 1000));
}

float realOr(PropertyReader& reader, std::string_view key, float missing) {
    return static_cast<float>(
        std::clamp(reader.real(key).value_or(double{missing}), -1000.0, 1000.0));
}

std::optional<int> noteOf(PropertyReader& reader, std::string_view key) {
    if (!reader.whole(key)) return std::nullopt;
    return wholeOr(reader, key, 0);
}

/// Its control is null where none of that name is there, its source unknown where that is missing.
MidiBinding restored(PropertyReader& reader, const ControlManager& controls) {
    constexpr int kNoSource = -1;
    const MidiBinding plain;
    MidiBinding binding;
    if (const auto name = reader.text("name")) binding.control = controls.controlNamed(*name);
    binding.trigger = {static_cast<MidiSource>(wholeOr(reader, "source", kNoSource)),
                       wholeOr(reader, "number", 0), wholeOr(reader, "channel", 0)};
    binding.min = realOr(reader, "min", plain.min);
    binding.max = realOr(reader, "max", plain.max);
    binding.curve = realOr(reader, "curve", plain.curve);
    binding.takeOver = static_cast<MidiTakeOver>(wholeOr(reader, "takeOver", 0));
    binding.relative = reader.boolean("relative").value_or(plain.relative);
    return binding;
}

} // namespace

PropertyDictionary MidiManager::getState() const {
    PropertyArray bindings;
    for (const MidiBinding& binding : bindings_) bindings.emplace_back(saved(binding));
    PropertyDictionary navigation{{"programs", navigation_.programsSelectPresets},
                                  {"banks", navigation_.bankSelectsBanks},
                                  {"channel", navigation_.channel},
                                  {"presetNotes", navigation_.presetNotes},
                                  {"bankNotes", navigation_.bankNotes}};
    if (navigation_.firstPresetNote) navigation["firstPresetNote"] = *navigation_.firstPresetNote;
    if (navigation_.firstBankNote) navigation["firstBankNote"] = *navigation_.firstBankNote;
    return {{"Bindings", std::move(bindings)}, {"Navigation", std::move(navigation)}};
}

void MidiManager::restoreState(const PropertyDictionary& state) {
    PropertyReader reader(state, "Midi");
    if (const PropertyArray* const bindings = reader.array("Bindings")) restoreBindings(*bindings);
    if (const PropertyDictionary* const navigation = reader.dictionary("Navigation"))
        restoreNavigation(*navigation);
}

void MidiManager::restoreBindings(const PropertyArray& saved) {
    stopLearning();
    std::set<Control*> concerned;
    for (const MidiBinding& binding : bindings_) concerned.insert(binding.control);
    bindings_.clear();
    followers_.clear();
    ++changes_;

    const PropertyDictionary nothing;
    const std::size_t most = std::min(saved.size(), kMostBindings);
    std::size_t leftOut = saved.size() - most;
    for (std::size_t i = 0; i < most; ++i) {
        const auto* const entry = saved[i].as<PropertyDictionary>();
        PropertyReader reader(entry ? *entry : nothing, "Midi.Bindings." + std::to_string(i));
        const MidiBinding binding = restored(reader, controls_);
        if (!checkBinding(binding)) {
            ++leftOut;
            continue;
        }
        takeOver(*binding.control);
        place(binding);
        concerned.insert(binding.control);
    }
    for (Control* const control : concerned) showBindings(*control);
    // One line for all: a file may hold any number of them.
    if (leftOut != 0)
        instance_.log.write(std::to_string(leftOut) +
                            " MIDI binding(s) left out: each needs the name of a "
                            "control that is here and numbers within their ranges, "
                            "and there can be " +
                            std::to_string(kMostBindings));
}

void MidiManager::restoreNavigation(const PropertyDictionary& saved) {
    PropertyReader reader(saved, "Midi.Navigation");
    Navigation navigation;
    navigation.programsSelectPresets =
        reader.boolean("programs").value_or(navigation.programsSelectPresets);
    navigation.bankSelectsBanks = reader.boolean("banks").value_or(navigation.bankSelectsBanks);
    navigation.channel = wholeOr(reader, "channel", navigation.channel);
    navigation.presetNotes = wholeOr(reader, "presetNotes", navigation.presetNotes);
    navigation.bankNotes = wholeOr(reader, "bankNotes", navigation.bankNotes);
    navigation.firstPresetNote = noteOf(reader, "firstPresetNote");
    navigation.firstBankNote = noteOf(reader, "firstBankNote");
    setNavigation(navigation);
}

} // namespace zephyra
