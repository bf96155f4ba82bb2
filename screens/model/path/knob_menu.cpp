#include "screens/model/path/knob_menu.h"

#include "controls/knob.h"
#include "screens/model/path/knob_text.h"

#include <utility>

namespace zephyra {

namespace {

/// What the rows show of the knob.
struct Shown {
    std::string value, resetsTo;
    AssignmentType type = AssignmentType::none;
    bool isLearning = false, isLocked = false, hasTilt = false, canRandomise = true;
};

Shown shownOf(AudioUnitViewController& view, ControlId id) {
    const MOK_KNOB* const knob = view.knob(id);
    if (!knob) return {};
    const ControlRange& range = controlRange(id);
    return {.value = knobText(range, knob->displayedValue()).whole(),
            .resetsTo = knobText(range, knob->defaultValue()).whole(),
            .type = view.assignments.typeOf(*knob),
            .isLearning = view.midiManager.learning() == knob,
            .isLocked = view.locks.isLocked(id),
            .hasTilt = view._GRANULATOR_STREAM.instance().accelerometer.isPresent()};
}

void paste(KnobHand& hand, ControlId id, const KnobMenuCalls& calls) {
    const Result<void> pasted = hand.type(id, calls.paste());
    if (!pasted && calls.tell) calls.tell(pasted.message());
}

} // namespace

std::vector<MenuRow> knobMenu(ScreenContext& context, KnobHand& hand, ControlId id,
                              KnobMenuCalls calls) {
    const Shown shown =
        context.source.asMain([id](AudioUnitViewController& view) { return shownOf(view, id); });
    std::vector<MenuRow> rows{
        {"Reset to " + shown.resetsTo, [&hand, id] { hand.reset(id); }},
        {"Randomise", [&hand, id] { hand.randomise(id); }, false, !shown.isLocked},
        {"Copy " + shown.value, [calls, value = shown.value] { calls.copy(value); }},
        {"Paste", [calls, &hand, id] { paste(hand, id, calls); }, false, !calls.paste().empty()},
        {"Type a value...", calls.typeValue},
        {}};
    const auto assignment = [&](const char* text, AssignmentType type) {
        rows.push_back({text, [&hand, id, type] { hand.assign(id, type); },
                        shown.type == type && !shown.isLearning});
    };
    assignment("Moved by nothing", AssignmentType::none);
    assignment("LFO", AssignmentType::lfo);
    rows.push_back({shown.isLearning                     ? "MIDI: stop waiting"
                    : shown.type == AssignmentType::midi ? "MIDI: learn another"
                                                         : "MIDI: learn",
                    [&hand, id] { hand.learnMidi(id); },
                    shown.type == AssignmentType::midi || shown.isLearning});
    assignment("Scrubbing finger, up and down", AssignmentType::scrubY);
    assignment("Second finger, up and down", AssignmentType::secondFinger);
    if (shown.hasTilt) {
        assignment("Tilt, left and right", AssignmentType::accelX);
        assignment("Tilt, forward and back", AssignmentType::accelY);
    }
    rows.push_back({});
    rows.push_back({"Lock against randomise",
                    [&hand, id, on = !shown.isLocked] { hand.lock(id, on); }, shown.isLocked});
    return rows;
}

} // namespace zephyra
