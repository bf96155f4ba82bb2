// PerformanceSurfaces: keyboards and pad of one stream, wired to what they play.
#pragma once

#include "controls/keyboard_tiny.h"
#include "controls/mok_keyboard.h"
#include "controls/pad.h"
#include "modulation/scrub_widgets.h"
#include "stream/stream_controller.h"

namespace zephyra {

/// The keyboard plays the pitch and shows MIDI notes; the small one tunes the ring modulator; the
/// pad plays the pitch by x and the density by y. MAIN.
class PerformanceSurfaces final : public MOK_KeyboardDelegate, public MOK_KeyboardTinyDelegate {
public:
    /// stream must outlive this.
    explicit PerformanceSurfaces(MOK_SCRUB_GRANULATOR& stream);
    ~PerformanceSurfaces() override;
    PerformanceSurfaces(const PerformanceSurfaces&) = delete;
    PerformanceSurfaces& operator=(const PerformanceSurfaces&) = delete;

    MOK_Keyboard _keyboard;
    MOK_KeyboardTiny _keyboardTiny;
    MOK_PAD _pad;
    /// What moves with the fingers on the keyboard and on the pad.
    ScrubWidgets keyboardWidgets, padWidgets;

    /// A MIDI note ended: its key goes up.
    void showNoteOff(int note);

    // MOK_KeyboardDelegate, MOK_KeyboardTinyDelegate
    void keyDown_keyNum_forAmp(MOK_Keyboard* keyboard, int keyNum, float amplitude) override;
    void keyUp_keyNum(MOK_Keyboard* keyboard, int keyNum) override;
    void getKeyboardTiny_numKey_Hz_andAmp(MOK_KeyboardTiny* keyboard, int key, double hz,
                                          float amplitude) override;

private:
    void padMoved();

    MOK_SCRUB_GRANULATOR& stream_;
    float padX_, padY_; // as last played
};

} // namespace zephyra
