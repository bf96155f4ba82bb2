// StreamControls: every control of one stream, with the ranges of the table.
#pragma once

#include "controls/named_knobs.h"
#include "controls/toggle.h"
#include "stream/control_ranges.h"
#include "stream/progress_indicator.h"

#include <string>

namespace zephyra {

/// Each control of stream/control_table.inl that a stream holds, under its name there and with its
/// range, default, curve, unit and channel, and the buttons beside them. MAIN.
struct StreamControls {
    /// suffix: what every channel ends with, one per stream.
    explicit StreamControls(const std::string& suffix);

// clang-format off
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) held
#define KNOB(type, member) type member;
#define TOGGLE(member) Toggle member;
#define BUTTON(member) Button member;
#define OWN_KNOB(type, member)
#define NO_CONTROL
#include "stream/control_table.inl"
    // clang-format on

    Button _rewind;
    Button liveClear;       ///< forgets what was heard
    Button _keyboardButton; ///< tag 1: pitch follows the keyboard
    Button _saveButton;     ///< offers what can be done with the live sound

    Button scrubRec;    ///< tag 1: a take is recorded, or waits for a hand
    Button scrubPlay;   ///< tag 1: a recorded take plays
    Button scrubRewind; ///< the take from its start
    ProgressIndicator scrubRecIndicator;
    Control scrubMessage; ///< what a recording waits for

    Control syncImg; ///< the badge that says that the scan follows the tempo

    /// What holds the value of id, and whether it is a knob, a toggle or a button; null for what
    /// stands elsewhere (Dry/Wet, the fade times, the scrubbing wave, the envelope).
    Control* control(ControlId id);
    MOK_KNOB* knob(ControlId id);
    Toggle* toggle(ControlId id);
    Button* button(ControlId id);
    const MOK_KNOB* knob(ControlId id) const {
        return const_cast<StreamControls*>(this)->knob(id);
    }
    const Toggle* toggle(ControlId id) const {
        return const_cast<StreamControls*>(this)->toggle(id);
    }
    const Button* button(ControlId id) const {
        return const_cast<StreamControls*>(this)->button(id);
    }

private:
    void setUpButtons(const std::string& suffix);
};

/// What the play button shows, one character of the icon font each.
inline constexpr const char* kPlayingIcon = "\uE775";
inline constexpr const char* kStoppedIcon = "\uE77B";

/// Tag and tint of a button that is on, or off.
void showActive(Button& button, bool active);
/// The background of a button that waits for the downbeat, or does not.
void showArmed(Button& button, bool armed);

/// A knob's range, default, curve, names, label and channel from its row of the table.
void setUpKnob(MOK_KNOB& knob, const ControlRange& range, const std::string& suffix);

} // namespace zephyra
