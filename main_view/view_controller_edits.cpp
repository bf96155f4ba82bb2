// What undo, compare and random settings see of the view controller.
#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <array>

namespace zephyra {

namespace {

bool differ(const PropertyDictionary& a, const PropertyDictionary& b, const std::string& key) {
    const auto one = a.find(key), other = b.find(key);
    const bool isInA = one != a.end(), isInB = other != b.end();
    return isInA != isInB || (isInA && !(one->second == other->second));
}

/// All of group or none.
template <typename Group>
void keepTogether(std::set<std::string>& keys, const Group& group) {
    const auto isIn = [&keys](const auto& key) { return keys.contains(key); };
    if (std::ranges::any_of(group, isIn)) keys.insert(group.begin(), group.end());
}

} // namespace

std::set<std::string>
AudioUnitViewController::changedKeys(const PropertyDictionary& a, const PropertyDictionary& b,
                                     const std::function<bool(const std::string&)>& skips) {
    std::set<std::string> keys;
    for (const PropertyDictionary* const state : {&a, &b})
        for (const auto& [key, value] : *state)
            if (differ(a, b, key) && !(skips && skips(key))) keys.insert(key);
    keepTogether(keys, std::array<std::string, 3>{state_key::kControlAssignments, state_key::kMidi,
                                                  state_key::kTilt});
    keepTogether(keys, _GRANULATOR_STREAM.scrubRecorder.takeKeys());
    return keys;
}

PropertyDictionary AudioUnitViewController::partOf(const PropertyDictionary& state,
                                                   const std::set<std::string>& keys) {
    PropertyDictionary part;
    for (const std::string& key : keys)
        if (const auto found = state.find(key); found != state.end())
            part.insert(*found);
        else if (key == _GRANULATOR_STREAM.scrubRecorder.takeKeys().front())
            part.insert_or_assign(key, 0); // no take
        else if (key == state_key::kLocked)
            part.insert_or_assign(key, PropertyArray());
    return part;
}

double AudioUnitViewController::secondsNow() const {
    return instance_.runLoop.now();
}

float AudioUnitViewController::baseValue(const MOK_KNOB& knob) {
    const LFO_WIDGETS_MAPPING& lfos = *assignments.getLfoWidgetsMapping();
    const LfoWidgetWrapper* const lfo = lfos.getWrapperID(&knob);
    const bool drives = lfo && lfos.getIsEnabled() && !lfo->isSuspended();
    return drives ? lfo->baseValue() : knob.value();
}

/// What LFOs are at, with the values that hands gave it.
std::map<ControlId, float> AudioUnitViewController::drivenValues() {
    std::map<ControlId, float> values;
    for (const ControlRange& range : controlRanges())
        if (const MOK_KNOB* const one = knob(range.id))
            if (const auto* lfo = assignments.getLfoWidgetsMapping()->getWrapperID(one))
                values[range.id] = lfo->baseValue();
    return values;
}

/// Where part is silent on a knob, it has the hand's value from before: below its LFO, or, when
/// that goes, itself.
void AudioUnitViewController::keepDriven(const std::map<ControlId, float>& before,
                                         const PropertyDictionary& part) {
    for (const auto& [id, value] : before) {
        MOK_KNOB& driven = *knob(id);
        const bool isNamed = part.contains(driven.channel);
        if (auto* const lfo = assignments.getLfoWidgetsMapping()->getWrapperID(&driven)) {
            lfo->setBaseValue(isNamed ? driven.value() : value);
        } else if (!isNamed) {
            driven.setValue(value);
            driven.sendEventValueChanged();
        }
    }
}

PropertyDictionary AudioUnitViewController::editState() {
    PropertyDictionary state = stateFor(StateUse::edit);
    for (const ControlRange& range : controlRanges())
        if (const MOK_KNOB* const one = knob(range.id))
            if (const auto kept = state.find(one->channel); kept != state.end())
                kept->second = baseValue(*one);
    locks.save(state);
    state.insert_or_assign(edit_key::kSlot, static_cast<std::int64_t>(compare.chosen()));
    state.insert_or_assign(edit_key::kSource, static_cast<std::int64_t>(source()));
    return state;
}

SoundSource AudioUnitViewController::source() const {
    if (!_GRANULATOR_STREAM.waveForm().isLiveCurrent()) return SoundSource::file;
    return _GRANULATOR_STREAM.isLive() ? SoundSource::live : SoundSource::captured;
}

void AudioUnitViewController::restorePart(const PropertyDictionary& part) {
    link_.beginState(instance_.states.ask());
    link_.beginGestures(part.contains(ofStream(state_key::kScanPosition))
                            ? HostLink::Scan::isPlaced
                            : HostLink::Scan::movesOn);
    const std::map<ControlId, float> driven = drivenValues();
    StateFindings findings; // of values that were this instance's own
    PropertyReader reader(part, findings);
    if (const auto slot = reader.whole(edit_key::kSlot))
        compare.stand(*slot == 0 ? CompareSlots::Slot::a : CompareSlots::Slot::b);
    restoreStreamState(_GRANULATOR_STREAM, sampleLoader, reader, {}, StateScope::part);
    restoreOwnKnobs(reader, StateScope::part);
    restoreModulation(reader, StateScope::part);
    keepDriven(driven, part);
    locks.restore(reader);
    const auto wanted = reader.whole(edit_key::kSource);
    if (wanted == static_cast<std::int64_t>(SoundSource::file) && source() == SoundSource::captured)
        _GRANULATOR_STREAM.restoreLastSample();
    refreshParameters(); // the scan's position has no control that tells the host
    link_.endGestures();
    link_.endState();
}

void AudioUnitViewController::restorePreset(const PropertyDictionary& state,
                                            StateOrder::Number asked) {
    const auto name = state.find(kSnapshotTags);
    const auto* const text = name == state.end() ? nullptr : name->second.as<std::string>();
    edits.beginEdit(text && !text->empty() ? *text : "Preset", EditKind::preset);
    edits.takeWhole();
    restoreStateProc_asked(state, asked);
    edits.endEdit();
}

} // namespace zephyra
