// Saving and restoring of MidiManager.

#include "controls/state_keys.h"
#include "modulation/midi_manager.h"
#include "platform/lists/property_reader.h"

#include <algorithm>
#include <set>
#include <utility>

namespace zephyra {

namespace {

using namespace midi_key;

PropertyDictionary saved(const MidiBinding& binding) {
    return {{assignment_key::kName, assignmentName(*binding.control)},
            {kSource, static_cast<std::int64_t>(binding.trigger.source)},
            {kNumber, binding.trigger.number},
            {kChannel, binding.trigger.channel},
            {kMin, binding.min},
            {kMax, binding.max},
            {kCurve, binding.curve},
            {kTakeOver, static_cast<std::int64_t>(binding.takeover)},
            {kRelative, binding.relative}};
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
    if (const auto name = reader.text(assignment_key::kName))
        binding.control = controls.controlNamed(*name);
    binding.trigger = {static_cast<MidiSource>(wholeOr(reader, kSource, kNoSource)),
                       wholeOr(reader, kNumber, 0), wholeOr(reader, kChannel, 0)};
    binding.min = realOr(reader, kMin, plain.min);
    binding.max = realOr(reader, kMax, plain.max);
    binding.curve = realOr(reader, kCurve, plain.curve);
    binding.takeover = static_cast<MidiTakeover>(wholeOr(reader, kTakeOver, 0));
    binding.relative = reader.boolean(kRelative).value_or(plain.relative);
    return binding;
}

} // namespace

PropertyDictionary MidiManager::getState() const {
    PropertyArray bindings;
    for (const MidiBinding& binding : bindings_) bindings.emplace_back(saved(binding));
    PropertyDictionary navigation{{kPrograms, navigation_.programsSelectPresets},
                                  {kBanks, navigation_.bankSelectsBanks},
                                  {kChannel, navigation_.channel},
                                  {kPresetNotes, navigation_.presetNotes},
                                  {kBankNotes, navigation_.bankNotes}};
    if (navigation_.firstPresetNote) navigation[kFirstPresetNote] = *navigation_.firstPresetNote;
    if (navigation_.firstBankNote) navigation[kFirstBankNote] = *navigation_.firstBankNote;
    return {{kBindings, std::move(bindings)}, {kNavigation, std::move(navigation)}};
}

StateFindings MidiManager::restoreState(const PropertyDictionary& state) {
    StateFindings findings;
    PropertyReader reader(state, findings, state_key::kMidi);
    if (const PropertyArray* const bindings = reader.array(kBindings))
        restoreBindings(*bindings, reader);
    if (const PropertyDictionary* const navigation = reader.dictionary(kNavigation))
        restoreNavigation(*navigation, reader);
    return findings;
}

void MidiManager::restoreBindings(const PropertyArray& saved, PropertyReader& state) {
    stopLearning();
    std::set<Control*> concerned;
    for (const MidiBinding& binding : bindings_) concerned.insert(binding.control);
    bindings_.clear();
    followers_.clear();
    ++changes_;

    const PropertyDictionary nothing;
    const std::size_t most = std::min(saved.size(), kMostBindings);
    std::size_t leftOut = saved.size() - most, twice = 0;
    for (std::size_t i = 0; i < most; ++i) {
        const auto* const entry = saved[i].as<PropertyDictionary>();
        PropertyReader reader(entry ? *entry : nothing, state.findings(),
                              state.path(kBindings) + "." + std::to_string(i), StandIn::usual);
        const MidiBinding binding = restored(reader, controls_);
        if (!checkBinding(binding)) {
            ++leftOut;
            continue;
        }
        assignToMidi(*binding.control);
        const std::size_t before = bindings_.size();
        place(binding);
        if (bindings_.size() == before) ++twice;
        concerned.insert(binding.control);
    }
    for (Control* const control : concerned) showBindings(*control);
    complainOfTwice(state.findings(), twice, "MIDI binding(s)");
    // One finding for all: a file may hold any number of them.
    if (leftOut != 0)
        state.findings().push_back({{},
                                    std::to_string(leftOut) +
                                        " MIDI binding(s) left out: each needs the name of a "
                                        "control that is here and numbers within their ranges, "
                                        "and there can be " +
                                        std::to_string(kMostBindings),
                                    StandIn::nothing});
}

void MidiManager::restoreNavigation(const PropertyDictionary& saved, PropertyReader& state) {
    PropertyReader reader(saved, state.findings(), state.path(kNavigation), StandIn::usual);
    Navigation navigation;
    navigation.programsSelectPresets =
        reader.boolean(kPrograms).value_or(navigation.programsSelectPresets);
    navigation.bankSelectsBanks = reader.boolean(kBanks).value_or(navigation.bankSelectsBanks);
    navigation.channel = wholeOr(reader, kChannel, navigation.channel);
    navigation.presetNotes = wholeOr(reader, kPresetNotes, navigation.presetNotes);
    navigation.bankNotes = wholeOr(reader, kBankNotes, navigation.bankNotes);
    navigation.firstPresetNote = noteOf(reader, kFirstPresetNote);
    navigation.firstBankNote = noteOf(reader, kFirstBankNote);
    if (const auto checked = checkNavigation(navigation))
        navigation_ = navigation;
    else
        state.findings().push_back({{}, checked.message(), StandIn::asBefore});
}

} // namespace zephyra
