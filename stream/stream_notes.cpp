// How notes become the pitch of MOK_SCRUB_GRANULATOR.

#include "stream/stream_controller.h"

#include <cmath>

namespace zephyra {

namespace {

constexpr int kPitchZeroKey = 24; // of the keyboard that is shown, which begins two octaves below
constexpr int kNoteOn = 144;

} // namespace

void MOK_SCRUB_GRANULATOR::ui_setPitchToKeyboard(Control*) {
    if (controls._keyboardButton.tag != 1) return;
    const auto steps = static_cast<int>(std::round(controls._pitch.value()));
    showsPitch_ = true;
    selectPitchFromMidiNote_andVeloc(steps + kPitchZeroNote, 127);
    showsPitch_ = false;
}

void MOK_SCRUB_GRANULATOR::selectPitchFromMidiNote_andVeloc(int note, int) {
    if (note < 0 || note > 127) return;
    if (!keyboard_)
        return keyDown_keyNum_forAmp(nullptr, note - kPitchZeroNote + kPitchZeroKey, 1.0f);
    keyboard_->releaseAllNotes();
    keyboard_->highlightKey_andData1_andData2(kNoteOn, note + Keyboard::kNoteShift, 127);
}

void MOK_SCRUB_GRANULATOR::keyDown_keyNum_forAmp(Keyboard*, int keyNum, float) {
    controls._pitch.setValue(static_cast<float>(keyNum) - float{kPitchZeroKey});
    if (settings_ && !showsPitch_) settings_->bendNote(controls._pitch);
    controls._pitch.sendEventValueChanged();
}

} // namespace zephyra
