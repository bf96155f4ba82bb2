#include "main_view/state_randomizer.h"

#include "main_view/audio_unit_view_controller.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

using enum ControlId;

bool shapesSound(const ControlRange& range) {
    if (range.kind == ControlKind::switching) return false;
    switch (range.id) {
    case scrubbingWave: // where a hand or the scan's own speed has it
    case amplitude:
    case dryWet:
    case normalize:
        return false;
    default:
        return range.group != ControlGroup::transport || range.id == envelope;
    }
}

} // namespace

double StateRandomizer::random() {
    return view_.instance().random.next32() * 0x1p-32;
}

bool StateRandomizer::moves(const ControlRange& range, OffSections offSections) const {
    if (!shapesSound(range) || view_.locks.isLocked(range.id)) return false;
    if (offSections == OffSections::move) return true;
    const StreamControls& controls = view_._GRANULATOR_STREAM.controls;
    if (range.group == ControlGroup::echo) return controls._echoSwitch.isOn();
    if (range.group == ControlGroup::ring) return controls._rmSwitch.isOn();
    return true;
}

void StateRandomizer::move(const ControlRange& range, double amount) {
    const double place = random();
    const bool isChoice = range.kind == ControlKind::choice;
    const double share = isChoice ? (random() < amount ? 1.0 : 0.0) : amount;
    if (range.id == envelope) {
        const auto count = static_cast<double>(range.maximum) + 1.0;
        if (share > 0.0)
            view_._GRANULATOR_STREAM.pickEnvelope(static_cast<std::size_t>(place * count));
        return;
    }
    MOK_KNOB* const knob = view_.knob(range.id);
    if (!knob || share == 0.0) return;
    knob->setValue(view_.baseValue(*knob));
    const double from = double{knob->valueNorm()};
    knob->setValueNorm(static_cast<float>(from + share * (place - from)));
    knob->sendActionsForControlEvents(control_event::all); // a whole gesture for the host
}

void StateRandomizer::randomize(double amount, OffSections offSections) {
    const double held = std::isfinite(amount) ? std::clamp(amount, 0.0, 1.0) : 0.0;
    view_.edits.beginEdit("Randomise");
    for (const ControlRange& range : controlRanges())
        if (moves(range, offSections)) move(range, held);
    view_.edits.endEdit();
}

} // namespace zephyra
