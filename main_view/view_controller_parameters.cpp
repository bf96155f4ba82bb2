// The view controller between audio unit and controls: what each tells the other.
#include "controls/state_keys.h"
#include "main_view/audio_unit_view_controller.h"

namespace zephyra {

void AudioUnitViewController::connectViewWithAU() {
    link_.connect();
}

void AudioUnitViewController::removeTargets() {
    link_.letGo();
}

void AudioUnitViewController::refreshParameters() {
    liveScan_.standAgain();
    link_.refresh();
    _GRANULATOR_STREAM.applyEffectControls();
    if (audioUnit_) audioUnit_->setDryWet(_inputDryWetKnob.value());
    connectViewWithAU();
}

void AudioUnitViewController::parameterMoved(AUParameterAddress address, AUValue moved) {
    link_.hostMoved(address, moved);
}

void AudioUnitViewController::standBehindInput() {
    liveScan_.standBehindInput();
}

void AudioUnitViewController::AUv3_Parameter_playToggle_from_DSP() {
    link_.tellButton(ControlId::playStop);
}

void AudioUnitViewController::AUv3_Parameter_freezeToggle_from_DSP() {
    link_.tellButton(ControlId::freeze);
}

void AudioUnitViewController::AUv3_Parameter_LiveToggle_from_DSP() {
    link_.tellButton(ControlId::live);
    if (_GRANULATOR_STREAM.isLive())
        liveScan_.standBehindInput();
    else
        liveScan_.leaveInput();
}

/// A hand on the sound is a gesture that hosts record, as on any other control.
void AudioUnitViewController::AUv3_Parameter_scrub_from_DSP(ControlEvents event) {
    edits.watch().movedByHand(ofStream(state_key::kScanPosition));
    link_.scanMoved(event);
}

} // namespace zephyra
