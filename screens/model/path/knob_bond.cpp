#include "screens/model/path/knob_bond.h"

#include "controls/named_knobs.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

std::string signOf(const MidiTrigger& trigger) {
    switch (trigger.source) {
    case MidiSource::controller:
    case MidiSource::controller14:
        return "CC" + std::to_string(trigger.number);
    case MidiSource::pitchBend:
        return "Bend";
    case MidiSource::note:
        return midiNoteName(trigger.number);
    case MidiSource::channelPressure:
        return "Press";
    }
    return {};
}

/// The first of the control's bindings that moves it now, else the first.
std::optional<std::size_t> bindingOf(const MidiManager& midi, const Control& control) {
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < midi.bindings().size(); ++i) {
        if (midi.bindings()[i].control != &control) continue;
        if (!midi.waitsForSoftTakeover(i)) return i;
        if (!found) found = i;
    }
    return found;
}

KnobBond midiBond(const MidiManager& midi, const Control& control) {
    KnobBond bond{.by = KnobMover::midi};
    const auto at = bindingOf(midi, control);
    if (!at) return bond;
    const MidiBinding& binding = midi.bindings()[*at];
    bond.sign = signOf(binding.trigger);
    bond.drives = !midi.waitsForSoftTakeover(*at);
    if (!binding.relative) bond.from = binding.min, bond.to = binding.max;
    return bond;
}

KnobBond lfoBond(const LFO_WIDGETS_MAPPING& lfos, const Control& control) {
    KnobBond bond{.by = KnobMover::lfo};
    const LfoWidgetWrapper* const wrapper = lfos.getWrapperID(&control);
    if (!wrapper) return bond;
    bond.from = wrapper->minRange(), bond.to = wrapper->maxRange();
    bond.drives = lfos.getIsEnabled() && !wrapper->isSuspended();
    if (const auto* const knob = dynamic_cast<const MOK_KNOB*>(&control)) {
        const float span = knob->maximumValue() - knob->minimumValue();
        bond.base = (wrapper->baseValue() - knob->minimumValue()) / span;
    }
    return bond;
}

WidgetWrapper* wrapperOf(AudioUnitViewController& view, Control& control) {
    switch (view.assignments.typeOf(control)) {
    case AssignmentType::lfo:
        return view.assignments.getLfoWidgetsMapping()->getWrapperID(&control);
    case AssignmentType::scrubY:
    case AssignmentType::secondFinger:
        return view.scrubWidgets.getWrapperID(&control);
    case AssignmentType::accelX:
    case AssignmentType::accelY:
        return view.tiltWidgets.getWrapperID(&control);
    case AssignmentType::none:
    case AssignmentType::midi:
        break;
    }
    return nullptr;
}

/// While a finger scrubs, or the device is tilted: what is not known to move counts as standing.
KnobBond wrapperBond(KnobMover by, const WidgetWrapper* wrapper, bool drives) {
    KnobBond bond{.by = by};
    if (!wrapper) return bond;
    bond.from = wrapper->minRange(), bond.to = wrapper->maxRange();
    bond.drives = drives;
    return bond;
}

} // namespace

KnobBond bondOf(AudioUnitViewController& view, Control& control) {
    switch (view.assignments.typeOf(control)) {
    case AssignmentType::lfo:
        return lfoBond(*view.assignments.getLfoWidgetsMapping(), control);
    case AssignmentType::midi:
        return midiBond(view.midiManager, control);
    case AssignmentType::scrubY:
        return wrapperBond(KnobMover::scrub, wrapperOf(view, control),
                           view.scrubWidgets.isDown(Finger::first));
    case AssignmentType::secondFinger:
        return wrapperBond(KnobMover::scrub, wrapperOf(view, control),
                           view.scrubWidgets.isDown(Finger::second));
    case AssignmentType::accelX:
    case AssignmentType::accelY:
        return wrapperBond(KnobMover::tilt, wrapperOf(view, control),
                           view._GRANULATOR_STREAM.instance().accelerometer.isPresent());
    case AssignmentType::none:
        break;
    }
    return {};
}

void setBondRange(AudioUnitViewController& view, Control& control, float from, float to) {
    if (!std::isfinite(from) || !std::isfinite(to)) return;
    if (WidgetWrapper* const wrapper = wrapperOf(view, control)) {
        wrapper->setMinRange(from);
        wrapper->setMaxRange(to);
        return;
    }
    const auto at = bindingOf(view.midiManager, control);
    if (!at || view.midiManager.bindings()[*at].relative) return;
    MidiBinding binding = view.midiManager.bindings()[*at];
    binding.min = std::clamp(from, 0.0f, 1.0f);
    binding.max = std::clamp(to, 0.0f, 1.0f);
    view.midiManager.bind(binding);
}

} // namespace zephyra
