// The view controller's state: the stream's, the controls that are its own, and, in a session, the
// preset that is selected.
#include "controls/state_keys.h"
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"
#include "platform/text/log.h"
#include "stream/sound_keeping.h"
#include "stream/state_sounds.h"
#include "stream/stream_state.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kNone = QuickPresetsManager::kNone;

PropertyDictionary selectionState(const QuickPresetsManager& presets) {
    PropertyDictionary selected; // empty for none, which is a selection to come back as well
    const std::string bank = presets.getCurrentSelectedBankName();
    const std::string key = presets.getCurrentSelectedSnapID();
    if (bank == kNone) return selected;
    selected.insert_or_assign(selection_key::kBank, bank);
    if (key != kNone) selected.insert_or_assign(selection_key::kKey, key);
    return selected;
}

void writeLines(Log& log, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) log.write(line);
}

} // namespace

PropertyDictionary AudioUnitViewController::stateFor(StateUse use) {
    PropertyDictionary state = unknownState_;
    saveStreamState(_GRANULATOR_STREAM, state, use);
    for (const ControlRange& range : controlRanges())
        if (const MOK_KNOB* const knob = ownKnob(range.id))
            state.insert_or_assign(knob->channel, knob->value());
    saveModulation(state);
    return state;
}

PropertyDictionary
AudioUnitViewController::getStateWith(const std::function<void(PropertyDictionary& state)>& add) {
    PropertyDictionary state;
    std::optional<StateSounds> sounds;
    {
        const RunLoop::Scope main(instance_.runLoop);
        state = stateFor(StateUse::session);
        state.insert_or_assign(state_key::kPreset, selectionState(presets));
        locks.save(state);
        sounds.emplace(_GRANULATOR_STREAM, &sampleLoader);
        if (add) add(state);
    }
    sounds->encode();
    const RunLoop::Scope main(instance_.runLoop);
    sounds->addTo(state, _GRANULATOR_STREAM);
    return state;
}

PropertyDictionary AudioUnitViewController::snapshotState() {
    if (const Result<void> kept = keepSoundAsFile(_GRANULATOR_STREAM); !kept)
        presentWarning(instance_.alerts, kept.message());
    return snapshotAsItIs();
}

PropertyDictionary AudioUnitViewController::snapshotAsItIs() {
    PropertyDictionary state = stateFor(StateUse::snapshot);
    state.at(state_key::kMidi).as<PropertyDictionary>()->erase(midi_key::kNavigation);
    return state;
}

void AudioUnitViewController::restoreState_then(
    PropertyDictionary state, std::function<void(StateOrder::Number asked)> then) {
    auto ahead = decodeAhead(state, kStreamSuffix); // which takes its time
    const StateOrder::Number asked = instance_.states.ask();
    instance_.runLoop.post([this, alive = std::weak_ptr(alive_), state = std::move(state), asked,
                            ahead = std::move(ahead), then = std::move(then)] {
        if (alive.expired()) return;
        _GRANULATOR_STREAM.capturedMemory().ahead = ahead;
        presets.cancelLoadsBefore(asked);
        if (state.contains(kSnapshotTags))
            restorePreset(state, asked);
        else
            restoreSession(state, asked);
        _GRANULATOR_STREAM.capturedMemory().ahead = nullptr;
        if (then) then(asked);
    });
}

/// Begins anew with it: what was done before is of another one.
void AudioUnitViewController::restoreSession(const PropertyDictionary& state,
                                             StateOrder::Number asked) {
    locks.clear(); // which a session without any does not name
    restoreStateProc_asked(state, asked);
    compare.clear();
    edits.clear();
}

void AudioUnitViewController::restoreStateProc(const PropertyDictionary& state) {
    restoreStateProc_asked(state, instance_.states.ask());
}

void AudioUnitViewController::restoreStateProc_asked(const PropertyDictionary& state,
                                                     StateOrder::Number asked) {
    link_.beginState(asked);
    const auto report = std::make_shared<RestoreReport>();
    report_ = report;
    PropertyReader reader(state, report->findings);
    const bool loads = restoreStreamState(_GRANULATOR_STREAM, sampleLoader, reader,
                                          [this, report](const SampleReport& sample) {
                                              report->sample = sample;
                                              sampleEnded(*report);
                                          });
    if (loads)
        report->sample = {.asked = _GRANULATOR_STREAM.sampleReference().path,
                          .end = SampleEnd::loading};
    restoreOwnKnobs(reader, StateScope::whole);
    locks.restore(reader);
    // Last: an LFO goes on from where its control stands.
    restoreModulation(reader, StateScope::whole);
    report->selection = restoreSelection(reader);
    unknownState_ = reader.unknown();
    refreshParameters(); // the scan's position has no control that tells the host
    link_.endState();
    if (!reportTaker_)
        writeLines(instance_.log, linesOf(*report));
    else if (!loads)
        handOver(*report);
}

void AudioUnitViewController::restoreOwnKnobs(PropertyReader& state, StateScope scope) {
    for (const ControlRange& range : controlRanges()) {
        MOK_KNOB* const knob = ownKnob(range.id);
        if (!knob) continue;
        const auto value = state.real(knob->channel);
        if (!value || (knob->skipFromPreset && scope == StateScope::whole)) continue;
        const double held = std::clamp(*value, double{knob->minimumValue()},
                                       double{knob->maximumValue()}); // may be beyond any float
        knob->setValue(static_cast<float>(held));
        knob->sendEventValueChanged();
    }
}

void AudioUnitViewController::handOver(const RestoreReport& report) const {
    const ReportTaker taker = reportTaker_; // which may set another one, or none, while it runs
    taker(report);
}

void AudioUnitViewController::sampleEnded(const RestoreReport& report) const {
    if (reportTaker_)
        handOver(report);
    else
        writeLines(instance_.log, linesOf(report.sample));
}

/// A preset that names another one, or itself, selects nothing: whoever loads it has selected it.
std::optional<QuickPresetsManager::Shown>
AudioUnitViewController::restoreSelection(PropertyReader& state) {
    const bool isSnapshot = state.text(kSnapshotTags).has_value();
    const PropertyDictionary* const selected = state.dictionary(state_key::kPreset);
    if (!selected || isSnapshot) return std::nullopt;
    PropertyReader reader(*selected, state.findings(), state_key::kPreset, StandIn::nothing);
    presets.setCurrentSelectedBankName(reader.text(selection_key::kBank).value_or(kNone));
    presets.setCurrentSelectedSnapID(reader.text(selection_key::kKey).value_or(kNone));
    presets.fillTableWithBankName();
    const auto shown = presets.showSelection(); // and the preset's row, without loading it
    return shown == QuickPresetsManager::Shown::coming ? std::nullopt : std::optional(shown);
}

} // namespace zephyra
