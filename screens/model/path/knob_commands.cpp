// What KnobHand does at once.
#include "controls/knob.h"
#include "controls/toggle.h"
#include "engine/envelope_menu.h"
#include "screens/model/path/knob_hand.h"
#include "screens/model/path/knob_text.h"

#include <utility>

namespace zephyra {

namespace {

std::string nameOf(ControlId id) {
    return controlRange(id).name;
}

} // namespace

template <typename Change>
void KnobHand::gesture(ControlId id, const std::string& name, Change&& change) {
    endSteps();
    const ScreenEdit edit(context_, name);
    context_.source.asMain([&](AudioUnitViewController& view) {
        if (MOK_KNOB* const knob = view.knob(id)) change(view, *knob);
    });
}

void KnobHand::reset(ControlId id) {
    gesture(id, nameOf(id) + " reset", [](auto&, MOK_KNOB& knob) { knob.resetsDefault(); });
}

void KnobHand::randomise(ControlId id) {
    gesture(id, nameOf(id) + " random", [](AudioUnitViewController& view, MOK_KNOB& knob) {
        knob.genRandomic(view._GRANULATOR_STREAM.instance().random);
    });
}

Result<void> KnobHand::type(ControlId id, const std::string& text) {
    const Result<float> linear = linearFromTyped(controlRange(id), text);
    if (!linear) return Failure{linear.message()};
    gesture(id, nameOf(id), [&](auto&, MOK_KNOB& knob) {
        knob.sendActionsForControlEvents(control_event::touchDown);
        knob.setValue(linear.value());
        knob.sendEventValueChanged();
        knob.sendActionsForControlEvents(control_event::touchUpInside);
    });
    return {};
}

void KnobHand::flip(ControlId id) {
    endSteps();
    const ScreenEdit edit(context_, nameOf(id));
    context_.source.asMain([id](AudioUnitViewController& view) {
        if (auto* const toggle = dynamic_cast<Toggle*>(view.control(id))) toggle->touch();
    });
}

void KnobHand::pickEnvelope(std::size_t menuIndex) {
    if (menuIndex >= kEnvelopeMenu.size()) return;
    endSteps();
    const ScreenEdit edit(context_, "Envelope");
    context_.source.asMain([menuIndex](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.pickEnvelope(menuIndex);
    });
}

void KnobHand::keepLive() {
    context_.source.asMain([](AudioUnitViewController& view) { view.liveExport.save(); });
}

void KnobHand::assign(ControlId id, AssignmentType type) {
    gesture(id, nameOf(id) + " assignment", [type](AudioUnitViewController& view, MOK_KNOB& knob) {
        if (view.midiManager.learning() == &knob) view.midiManager.stopLearning();
        view.assignments.assign(knob, type);
    });
}

void KnobHand::learnMidi(ControlId id) {
    context_.source.asMain([id](AudioUnitViewController& view) {
        MOK_KNOB* const knob = view.knob(id);
        if (!knob) return;
        if (view.midiManager.learning() == knob)
            view.midiManager.stopLearning();
        else
            view.midiManager.learn(*knob);
    });
}

void KnobHand::beginRange(ControlId id) {
    endSteps();
    beginEdit(nameOf(id) + " range");
}

void KnobHand::moveRange(ControlId id, BondEnd end, float place) {
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_KNOB* const knob = view.knob(id);
        if (!knob) return;
        const KnobBond bond = bondOf(view, *knob);
        if (!bond.from || !bond.to) return;
        if (end == BondEnd::from)
            setBondRange(view, *knob, place, *bond.to);
        else
            setBondRange(view, *knob, *bond.from, place);
    });
}

void KnobHand::endRange() {
    endEdit();
}

void KnobHand::lock(ControlId id, bool on) {
    gesture(id, nameOf(id) + " lock",
            [id, on](AudioUnitViewController& view, auto&) { view.locks.setLocked(id, on); });
}

} // namespace zephyra
