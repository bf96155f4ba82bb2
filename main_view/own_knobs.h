// OwnKnobs: the controls of the table that belong to no stream, Dry/Wet and the fade times.
#pragma once

#include "controls/named_knobs.h"
#include "stream/control_ranges.h"

#include <string>

namespace zephyra {

class NotificationCenter;

/// Each OWN_KNOB of stream/control_table.inl under its name there, made with the range, default,
/// unit and channel of its row. MAIN.
struct OwnKnobs {
    /// suffix: what every channel ends with but Dry/Wet's. The interaction style follows center,
    /// which must outlive this.
    OwnKnobs(NotificationCenter& center, const std::string& suffix);

    /// The knob of id; null for what is not here.
    MOK_KNOB* ownKnob(ControlId id);

// clang-format off
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) held
#define KNOB(type, member)
#define TOGGLE(member)
#define BUTTON(member)
#define OWN_KNOB(type, member) type member;
#define NO_CONTROL
#include "stream/control_table.inl"
    // clang-format on
};

} // namespace zephyra
