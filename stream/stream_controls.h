// StreamControls: every control of one stream, with the ranges of the table.
#pragma once

#include "controls/named_knobs.h"
#include "controls/toggle.h"
#include "stream/control_ranges.h"
#include "stream/progress_indicator.h"

#include <string>

namespace zephyra {

/// Made with the ranges, defaults, curves, units and channels of controlRanges(). MAIN.
struct StreamControls {
    /// suffix: what every channel ends with, one per stream.
    explicit StreamControls(const std::string& suffix);

    Button _playToggle; ///< tag 1: playing
    Button _rewind;
    Button _freeze;         ///< tag 1: the scan stands
    Button _enableLIVE;     ///< tag 1: grains are cut from the input
    Button liveClear;       ///< forgets what was heard
    Button _keyboardButton; ///< tag 1: pitch follows the keyboard
    Button _saveButton;     ///< offers what can be done with the live sound

    Button scrubRec;    ///< tag 1: a take is recorded, or waits for a hand
    Button scrubPlay;   ///< tag 1: a recorded take plays
    Button scrubRewind; ///< the take from its start
    ProgressIndicator scrubRecIndicator;
    Control scrubMessage; ///< what a recording waits for

    MOK_KNOB _volume, _pan, _width, _rnd_density, _rnd_len, _pitch, _rnd_pitch, _scanning;
    MokKnobHZ _density;
    MOK_KNOB_EXP _length, _jitter;

    Toggle _echoSwitch;
    MokKnobTime _echoDelayLeft, _echoDelayRight;
    MOK_KNOB _echoGainLeft, _echoGainRight;
    Toggle syncDelay; ///< echo times follow the tempo
    MokKnobEnum delay_subdivisionLeft, delay_subdivisionRight;

    Toggle _rmSwitch;
    MokKnobHZ _rmFrequency;
    MOK_KNOB _rmAmount;

    MOK_KNOB _normalizeGain;

    Toggle syncSampler; ///< the scan follows the tempo, the transport the host's
    MOK_KNOB sampler_mesure, sampler_quarter;
    Control syncImg; ///< the badge that says so

    /// The knob or toggle of id; null for what has none here (buttons, Dry/Wet, the fade times, the
    /// scrubbing wave, the envelope).
    MOK_KNOB* knob(ControlId id);
    Toggle* toggle(ControlId id);
    const MOK_KNOB* knob(ControlId id) const { return const_cast<StreamControls*>(this)->knob(id); }
    const Toggle* toggle(ControlId id) const {
        return const_cast<StreamControls*>(this)->toggle(id);
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

/// A knob's range, default, label and channel from its row of the table.
void setUpKnob(MOK_KNOB& knob, const ControlRange& range, const std::string& suffix);

} // namespace zephyra
