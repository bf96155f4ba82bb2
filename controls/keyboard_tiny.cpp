#include "controls/keyboard_tiny.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kWhiteKeys = 7.0;
constexpr int kLowestOctave = 0, kHighestOctave = 8;
constexpr int kNoteOfOctave0 = 12, kNoteOfA4 = 69; // MIDI notes
constexpr double kHzOfA4 = 440.0;
constexpr double kSemitones = 12.0; // an octave

} // namespace

void MOK_KeyboardTiny::setSize(double width, double height) {
    if (setSurface(width, height)) layOutKeys(keyRects, width / kWhiteKeys, height);
}

void MOK_KeyboardTiny::setOctave(int octave) {
    const int held = std::clamp(octave, kLowestOctave, kHighestOctave);
    if (held == octave_) return;
    allNoteOff(); // with the frequencies that they went down with
    octave_ = held;
    setNeedsDisplay();
}

double MOK_KeyboardTiny::frequency(int key) const {
    const int note = kNoteOfOctave0 + 12 * octave_ + key;
    return kHzOfA4 * std::exp2((note - kNoteOfA4) / kSemitones);
}

void MOK_KeyboardTiny::allNoteOff() {
    touches_.clear();
    forgetTouches();
    updateKeyStates();
}

void MOK_KeyboardTiny::fingerBegan(TouchId touch, Point at, double) {
    touches_.begin(touch, -1, 0.0f);
    fingerMoved(touch, at);
}

void MOK_KeyboardTiny::fingerMoved(TouchId touch, Point at) {
    const int key = getKeyboardKey(at);
    const bool onKey = key >= 0;
    touches_.move(touch, key, onKey ? touchAmplitude(keyRects[key], at) : 0.0f);
    updateKeyStates();
}

void MOK_KeyboardTiny::fingerEnded(TouchId touch, bool) {
    touches_.end(touch);
    updateKeyStates();
}

void MOK_KeyboardTiny::updateKeyStates() {
    touches_.settle(
        kKeys, [this](int key) { return keyDown[key] > 0.0f; },
        [this](int key, float amplitude) { change(key, amplitude); });
}

void MOK_KeyboardTiny::change(int key, float amplitude) {
    keyDown[key] = amplitude;
    setNeedsDisplay();
    if (delegate) delegate->getKeyboardTiny_numKey_Hz_andAmp(this, key, frequency(key), amplitude);
}

} // namespace zephyra
