#include "main_view/own_knobs.h"

#include "stream/stream_controls.h"

namespace zephyra {

OwnKnobs::OwnKnobs(NotificationCenter& center, const std::string& suffix) {
    for (const ControlRange& range : controlRanges())
        if (MOK_KNOB* const knob = ownKnob(range.id)) {
            setUpKnob(*knob, range, suffix);
            knob->observeInteractionStyle(center);
        }
}

MOK_KNOB* OwnKnobs::ownKnob(ControlId wanted) {
    // clang-format off
    switch (wanted) {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) case ControlId::id: return held;
#define KNOB(type, member) nullptr
#define TOGGLE(member) nullptr
#define BUTTON(member) nullptr
#define OWN_KNOB(type, member) &member
#define NO_CONTROL nullptr
#include "stream/control_table.inl"
    }
    // clang-format on
    return nullptr;
}

} // namespace zephyra
