// MOK_KeyboardTiny: one octave of keys that speak frequencies.
#pragma once

#include "controls/key_touches.h"
#include "controls/keyboard_layout.h"
#include "controls/touch_surface.h"

#include <array>

namespace zephyra {

class MOK_KeyboardTiny;

/// Who uses the frequencies. MAIN.
class MOK_KeyboardTinyDelegate {
public:
    virtual ~MOK_KeyboardTinyDelegate() = default;
    /// key: 0..11 from C; amplitude: above 0 up to 1 when the key goes down, 0 when it goes up.
    virtual void getKeyboardTiny_numKey_Hz_andAmp(MOK_KeyboardTiny* keyboard, int key, double hz,
                                                  float amplitude) = 0;
};

/// Fingers glide as on MOK_Keyboard. MAIN.
class MOK_KeyboardTiny final : public TouchSurface {
public:
    static constexpr int kKeys = 12;

    explicit MOK_KeyboardTiny(std::string key = {}) : TouchSurface(std::move(key)) {}

    MOK_KeyboardTinyDelegate* delegate = nullptr; ///< null, or it outlives this

    std::array<KeyRect, kKeys> keyRects; ///< where to draw and touch each key
    std::array<float, kKeys> keyDown{};  ///< 0 when up, else the amplitude

    /// Points; finite and above 0, else ignored. Seven white keys to the width.
    void setSize(double width, double height);
    int getKeyboardKey(Point at) const { return keyAt(keyRects, at); } ///< -1 for none

    /// Held to 0..8; octave 4 begins with note 60. Keys that are down go up first.
    void setOctave(int octave);
    int octave() const noexcept { return octave_; }
    /// Equal temperament, A4 = 440 Hz; a key beyond the octave continues it.
    double frequency(int key) const;

    /// Releases every key and forgets the fingers.
    void allNoteOff();

protected:
    void fingerBegan(TouchId touch, Point at, double time) override;
    void fingerMoved(TouchId touch, Point at) override;
    void fingerEnded(TouchId touch, bool cancelled) override;

private:
    void updateKeyStates();
    void change(int key, float amplitude);

    int octave_ = 4;
    KeyTouches touches_;
};

} // namespace zephyra
