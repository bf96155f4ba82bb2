#include "stream/stream_controls.h"

#include "controls/note_values.h"

#include <optional>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

using enum ControlId;

constexpr float kDisabledAlpha = 0.3f;

std::string channelOf(ControlId id, const std::string& suffix) {
    return controlRange(id).channel + suffix;
}

void setUpToggle(Toggle& toggle, ControlId id, const std::string& suffix) {
    toggle.channel = channelOf(id, suffix);
    toggle.isOnByDefault = controlRange(id).defaultValue != 0.0f;
    toggle.setOn(toggle.isOnByDefault);
}

void setUpCurvedKnob(CurvedKnob& knob, ControlId id, const std::string& suffix) {
    knob.setStepness(controlRange(id).stepness); // before the default, which is bent by it
    setUpKnob(knob, controlRange(id), suffix);
}

void setUpSubdivision(MokKnobEnum& knob, ControlId id, const std::string& suffix) {
    std::vector<std::string> names;
    for (const NoteValue& note : kNoteValues) names.emplace_back(note.name);
    knob.setNames(std::move(names));
    setUpKnob(knob, controlRange(id), suffix);
    knob.hidden = true;
}

void setUpCount(MOK_KNOB& knob, ControlId id, const std::string& suffix) {
    setUpKnob(knob, controlRange(id), suffix);
    knob._precision = 0;
    knob.hidden = true;
}

} // namespace

void showActive(Button& button, bool active) {
    button.tag = active ? 1 : 0;
    button.tintColor = active ? std::optional(kActiveRed) : std::nullopt;
    button.setNeedsDisplay();
}

void showArmed(Button& button, bool armed) {
    button.backgroundColor = armed ? std::optional(kArmedRed) : std::nullopt;
    button.setNeedsDisplay();
}

void setUpKnob(MOK_KNOB& knob, const ControlRange& range, const std::string& suffix) {
    knob.channel = range.channel + suffix;
    knob.setRange(range.minimum, range.maximum);
    knob.setDefaultValue(range.defaultValue);
    knob.setDisplayedValue(range.defaultValue);
    knob._postfix = range.unit;
}

StreamControls::StreamControls(const std::string& suffix) {
    for (const ControlId id :
         {amplitude, pan, width, rndDensity, rndLength, pitch, rndPitch, scanning, leftDelay,
          rightDelay, leftGain, rightGain, ringModulationAmount, normalize})
        setUpKnob(*knob(id), controlRange(id), suffix);
    setUpCurvedKnob(_density, density, suffix);
    setUpCurvedKnob(_length, length, suffix);
    setUpCurvedKnob(_jitter, jittering, suffix);
    setUpCurvedKnob(_rmFrequency, ringModulationFrequency, suffix);
    setUpSubdivision(delay_subdivisionLeft, leftSubdivision, suffix);
    setUpSubdivision(delay_subdivisionRight, rightSubdivision, suffix);
    setUpCount(sampler_mesure, measures, suffix);
    setUpCount(sampler_quarter, quarters, suffix);
    for (const ControlId id : {echoSwitch, echoSync, ringModulationSwitch, scanSync})
        setUpToggle(*toggle(id), id, suffix);
    setUpButtons(suffix);
    _playToggle.title = kStoppedIcon;
    syncImg.hidden = true;
    scrubMessage.hidden = true;
    for (Button* const button : {&scrubPlay, &scrubRewind}) { // until there is a take
        button->userInteractionEnabled = false;
        button->alpha = kDisabledAlpha;
    }
}

void StreamControls::setUpButtons(const std::string& suffix) {
    _freeze.channel = channelOf(freeze, suffix);
    _enableLIVE.channel = channelOf(live, suffix);
    _playToggle.channel = "PlayToggle" + suffix;
    _rewind.channel = "Rewind" + suffix;
    liveClear.channel = "LiveClear" + suffix;
    _keyboardButton.channel = "Keyboard" + suffix;
    scrubRec.channel = "ScrubRec" + suffix;
    scrubPlay.channel = "ScrubPlay" + suffix;
    scrubRewind.channel = "ScrubRewind" + suffix;
}

MOK_KNOB* StreamControls::knob(ControlId id) {
    switch (id) {
    case amplitude:
        return &_volume;
    case pan:
        return &_pan;
    case width:
        return &_width;
    case density:
        return &_density;
    case rndDensity:
        return &_rnd_density;
    case length:
        return &_length;
    case rndLength:
        return &_rnd_len;
    case pitch:
        return &_pitch;
    case rndPitch:
        return &_rnd_pitch;
    case scanning:
        return &_scanning;
    case jittering:
        return &_jitter;
    case leftDelay:
        return &_echoDelayLeft;
    case rightDelay:
        return &_echoDelayRight;
    case leftGain:
        return &_echoGainLeft;
    case rightGain:
        return &_echoGainRight;
    case ringModulationFrequency:
        return &_rmFrequency;
    case ringModulationAmount:
        return &_rmAmount;
    case normalize:
        return &_normalizeGain;
    case measures:
        return &sampler_mesure;
    case quarters:
        return &sampler_quarter;
    case leftSubdivision:
        return &delay_subdivisionLeft;
    case rightSubdivision:
        return &delay_subdivisionRight;
    default:
        return nullptr;
    }
}

Toggle* StreamControls::toggle(ControlId id) {
    switch (id) {
    case echoSwitch:
        return &_echoSwitch;
    case ringModulationSwitch:
        return &_rmSwitch;
    case scanSync:
        return &syncSampler;
    case echoSync:
        return &syncDelay;
    default:
        return nullptr;
    }
}

} // namespace zephyra
