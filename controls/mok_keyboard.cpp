#include "controls/mok_keyboard.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr int kNoteOn = 144, kNoteOff = 128;
constexpr int kHighestVelocity = 127;
constexpr std::array<double, 3> kWhiteKeysBySplit = {8.0, 15.0, 22.0};

} // namespace

// --- Layout ---

void MOK_Keyboard::setSize(double width, double height) {
    if (!setSurface(width, height)) return;
    lastWidth = width;
    whiteKeyWidth = width / whiteKeysAcross_;
    updateKeyRects();
}

void MOK_Keyboard::setKeySizeProc(double width) {
    if (!std::isfinite(width) || width <= 0.0) return;
    whiteKeysAcross_ = kWhiteKeysAtFirst;
    whiteKeyWidth = width / whiteKeysAcross_;
    updateKeyRects();
}

void MOK_Keyboard::setKeyboardSplit(int selector) {
    if (selector < 0 || selector >= static_cast<int>(kWhiteKeysBySplit.size())) return;
    whiteKeysAcross_ = kWhiteKeysBySplit[selector];
    if (lastWidth < 0.0) return;
    whiteKeyWidth = lastWidth / whiteKeysAcross_;
    updateKeyRects();
}

void MOK_Keyboard::updateKeyRects() {
    layOutKeys(keyRects, whiteKeyWidth, surfaceHeight());
    setSurface(contentWidth(), surfaceHeight());
}

// --- Fingers ---

MOK_Keyboard::Touched MOK_Keyboard::touched(Point at) const {
    const int key = getKeyboardKey(at);
    if (key < 0) return {key, 0.0f};
    return {key, touchAmplitude(keyRects[key], at)};
}

bool MOK_Keyboard::beginsChord(double time) const {
    return !(time >= chordBegan_ && time - chordBegan_ <= kChordTime);
}

void MOK_Keyboard::fingerBegan(TouchId touch, Point at, double time) {
    releaseShown();
    if (_isLocked && beginsChord(time)) {
        touches_.clear();
        chordBegan_ = time;
    }
    const Touched on = touched(at);
    touches_.begin(touch, on.key, on.amplitude);
    updateKeyStates();
}

void MOK_Keyboard::fingerMoved(TouchId touch, Point at) {
    const Touched on = touched(at);
    touches_.move(touch, on.key, on.amplitude);
    updateKeyStates();
}

void MOK_Keyboard::fingerEnded(TouchId touch, bool cancelled) {
    if (_isLocked && !cancelled)
        touches_.lock(touch);
    else
        touches_.end(touch);
    updateKeyStates();
}

void MOK_Keyboard::setLocked(bool locked) {
    _isLocked = locked;
    if (locked) return;
    touches_.unlock();
    updateKeyStates();
}

void MOK_Keyboard::holdKey(const void* holder, int key, float amplitude) {
    const bool presses = key >= _start && key < _stop && amplitude > 0.0f;
    touches_.hold(holder, presses ? key : -1, std::min(amplitude, 1.0f));
    updateKeyStates();
}

// --- Keys ---

void MOK_Keyboard::setKey(int key, float amplitude) {
    keyDown[key] = amplitude;
    setNeedsDisplay();
}

void MOK_Keyboard::change(int key, float amplitude) {
    setKey(key, amplitude);
    sendActionsStatus_forKey(amplitude > 0.0f ? kNoteOn : kNoteOff, key);
}

void MOK_Keyboard::updateKeyStates() {
    touches_.settle(
        _stop, [this](int key) { return keyDown[key] > 0.0f; },
        [this](int key, float amplitude) {
            const bool keptByMidi = amplitude <= 0.0f && shown_[key];
            if (!keptByMidi) change(key, amplitude);
        });
}

void MOK_Keyboard::releaseShown() {
    for (int key = _start; key < _stop; ++key)
        if (shown_[key]) {
            shown_.reset(key);
            change(key, 0.0f);
        }
}

void MOK_Keyboard::allNoteOff() {
    touches_.clear();
    shown_.reset();
    forgetTouches();
    updateKeyStates();
}

void MOK_Keyboard::releaseAllNotes() {
    if (numberOfTouches() == 0) allNoteOff();
}

// --- MIDI ---

void MOK_Keyboard::show(int status, int key, int velocity) {
    const int shownVelocity = status == kNoteOn ? std::clamp(velocity, 0, kHighestVelocity) : 0;
    if (shownVelocity == 0) touches_.letGo(key);
    shown_.set(key, shownVelocity > 0);
    setKey(key, static_cast<float>(shownVelocity) / float{kHighestVelocity});
}

void MOK_Keyboard::highlightKey_andData1_andData2(int status, int data1, int data2) {
    if (status != kNoteOn && status != kNoteOff) return;
    if (data1 < kLowestNote || data1 >= kLowestNote + _stop || numberOfTouches() > 0) return;
    show(status, data1 - kLowestNote, data2);
    sendActionsStatus_forKey(status, data1 - kLowestNote);
}

void MOK_Keyboard::justHighlightKey_andData1_andData2(int status, int data1, int data2) {
    if (status != kNoteOn && status != kNoteOff) return;
    if (data1 < _start || data1 >= _stop || touches_.amplitude(data1) > 0.0f) return;
    show(status, data1, data2);
}

void MOK_Keyboard::sendActionsStatus_forKey(int status, int key) {
    if (!mKeyboardDelegate || key < _start || key >= _stop) return;
    if (status == kNoteOff)
        mKeyboardDelegate->keyUp_keyNum(this, key);
    else
        mKeyboardDelegate->keyDown_keyNum_forAmp(this, key, keyDown[key]);
}

} // namespace zephyra
