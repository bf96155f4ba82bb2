#include "main_view/performance_surfaces.h"

namespace zephyra {

namespace {

constexpr int kNoteOff = 128; // status of what the keyboard is shown

} // namespace

PerformanceSurfaces::PerformanceSurfaces(MOK_SCRUB_GRANULATOR& stream)
    : keyboardWidgets(stream.instance().runLoop), padWidgets(stream.instance().runLoop),
      stream_(stream) {
    _keyboard.mKeyboardDelegate = this;
    _keyboard.mWidgetWrappers = &keyboardWidgets;
    _keyboard.touchListener = &keyboardWidgets;
    _keyboardTiny.delegate = this;
    _pad.channel = stream.channel();
    _pad.userDefaults = &stream.instance().defaults;
    _pad.log = &stream.instance().log;
    _pad.loadAsDefault();
    _pad.mWidgetWrappers = &padWidgets;
    _pad.touchListener = &padWidgets;
    _pad.addTarget(this, "padMoved:", control_event::valueChanged,
                   [this](Control&) { padMoved(); });
    padX_ = _pad.xValue();
    padY_ = _pad.yValue();
    stream_.setKeyboard(&_keyboard);
}

PerformanceSurfaces::~PerformanceSurfaces() {
    stream_.setKeyboard(nullptr);
}

void PerformanceSurfaces::showNoteOff(int note) {
    _keyboard.highlightKey_andData1_andData2(kNoteOff, note + Keyboard::kNoteShift, 0);
}

void PerformanceSurfaces::keyDown_keyNum_forAmp(MOK_Keyboard* keyboard, int keyNum,
                                                float amplitude) {
    stream_.keyDown_keyNum_forAmp(keyboard, keyNum, amplitude);
}

/// The stream sounds on at the last pitch.
void PerformanceSurfaces::keyUp_keyNum(MOK_Keyboard*, int) {}

void PerformanceSurfaces::getKeyboardTiny_numKey_Hz_andAmp(MOK_KeyboardTiny*, int, double hz,
                                                           float amplitude) {
    if (amplitude <= 0.0f) return; // a release
    MOK_KNOB_EXP& frequency = stream_.controls._rmFrequency;
    frequency.setValueExp(static_cast<float>(hz));
    if (StreamSettings* const settings = stream_.settings()) settings->bendNote(frequency);
    frequency.sendEventValueChanged();
}

/// Only along the way that it moved: what the other axis plays may have been set by hand.
void PerformanceSurfaces::padMoved() {
    if (_pad.xValue() != padX_)
        stream_.setLinear(ControlId::pitch,
                          static_cast<float>(_pad.note() - MOK_SCRUB_GRANULATOR::kPitchZeroNote));
    if (_pad.yValue() != padY_) {
        MOK_KNOB& density = stream_.controls._density;
        density.setValueNorm(_pad.yValue());
        density.sendEventValueChanged();
    }
    padX_ = _pad.xValue();
    padY_ = _pad.yValue();
}

} // namespace zephyra
