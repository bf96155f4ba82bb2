// The view controller's state: the stream's, the controls that are its own, and, in a session, the
// preset that is selected.
#include "library/bank_edits.h"
#include "main_view/audio_unit_view_controller.h"
#include "stream/sound_keeping.h"
#include "stream/stream_state.h"
#include "stream/warning.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kPreset = "Preset";
constexpr const char* kNone = QuickPresetsManager::kNone;

PropertyDictionary selectionState(const QuickPresetsManager& presets) {
    PropertyDictionary selected; // empty for none, which is a selection to come back as well
    const std::string bank = presets.getCurrentSelectedBankName();
    const std::string key = presets.getCurrentSelectedSnapID();
    if (bank == kNone) return selected;
    selected.insert_or_assign("Bank", bank);
    if (key != kNone) selected.insert_or_assign("Key", key);
    return selected;
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

PropertyDictionary AudioUnitViewController::getState() {
    PropertyDictionary state = stateFor(StateUse::session);
    state.insert_or_assign(kPreset, selectionState(presets));
    return state;
}

PropertyDictionary AudioUnitViewController::snapshotState() {
    if (const Result<void> kept = keepSoundAsFile(instance_, _GRANULATOR_STREAM); !kept)
        presentWarning(instance_, kept.message());
    PropertyDictionary state = stateFor(StateUse::snapshot);
    state.at("Midi").as<PropertyDictionary>()->erase("Navigation");
    return state;
}

void AudioUnitViewController::restoreState(PropertyDictionary state) {
    instance_.runLoop.post([this, alive = std::weak_ptr(alive_), state = std::move(state)] {
        if (alive.expired()) return;
        presets.cancelLoads(); // whatever was chosen before, all of it is other now
        restoreStateProc(state);
    });
}

void AudioUnitViewController::restoreStateProc(const PropertyDictionary& state) {
    PropertyReader reader(state);
    restoreStreamState(_GRANULATOR_STREAM, sampleLoader, reader);
    for (const ControlRange& range : controlRanges()) {
        MOK_KNOB* const knob = ownKnob(range.id);
        if (!knob) continue;
        const auto value = reader.real(knob->channel);
        if (!value || knob->skipFromPreset) continue;
        const double held = std::clamp(*value, double{knob->minimumValue()},
                                       double{knob->maximumValue()}); // may be beyond any float
        knob->setValue(static_cast<float>(held));
        knob->sendEventValueChanged();
    }
    restoreModulation(reader); // last: an LFO goes on from where its control stands
    restoreSelection(reader);
    unknownState_ = reader.unknown();
    refreshParameters(); // the scan's position has no control that tells the host
}

/// A preset that names another one, or itself, selects nothing: whoever loads it has selected it.
void AudioUnitViewController::restoreSelection(PropertyReader& state) {
    const bool isSnapshot = state.text(kSnapshotTags).has_value();
    const PropertyDictionary* const selected = state.dictionary(kPreset);
    if (!selected || isSnapshot) return;
    PropertyReader reader(*selected, kPreset);
    presets.setCurrentSelectedBankName(reader.text("Bank").value_or(kNone));
    presets.setCurrentSelectedSnapID(reader.text("Key").value_or(kNone));
    presets.fillTableWithBankName();
    presets.refreshBankSelection(); // and the preset's row, without loading it
}

} // namespace zephyra
