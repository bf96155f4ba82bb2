// MOK_Keyboard: the piano keyboard on the screen, played by fingers and lit by MIDI.
#pragma once

#include "controls/forwarded_scrub_reference.h"
#include "controls/key_touches.h"
#include "controls/keyboard.h"
#include "controls/keyboard_layout.h"
#include "controls/touch_surface.h"
#include "platform/threads/relaxed.h"

#include <array>
#include <bitset>

namespace zephyra {

class MOK_Keyboard;

/// Who plays what the keyboard says. MAIN.
class MOK_KeyboardDelegate {
public:
    virtual ~MOK_KeyboardDelegate() = default;
    /// keyNum: 0..48; amplitude: 0..1.
    virtual void keyDown_keyNum_forAmp(MOK_Keyboard* keyboard, int keyNum, float amplitude) = 0;
    virtual void keyUp_keyNum(MOK_Keyboard* keyboard, int keyNum) = 0;
};

/// Four octaves and the top C; key k is MIDI note k + 48. Fingers glide: leaving a key releases it
/// unless another finger holds it, entering one presses it. A hand wins over MIDI: a finger that
/// begins releases the keys that MIDI pressed, and MIDI shows nothing until the last one ended. An
/// amplitude is taken where the finger enters the key, see touchAmplitude(). MAIN.
class MOK_Keyboard final : public TouchSurface, public Keyboard, public ForwardedScrubReference {
public:
    static constexpr int _start = 0, _stop = 49;      ///< the keys, the last one excluded
    static constexpr int kLowestNote = 48;            ///< MIDI note of key 0
    static constexpr double kChordTime = 0.05;        ///< seconds in which fingers begin one chord
    static constexpr double kWhiteKeysAtFirst = 21.0; ///< to the view's width

    explicit MOK_Keyboard(std::string key = {}) : TouchSurface(std::move(key)) {}

    MOK_KeyboardDelegate* mKeyboardDelegate = nullptr; ///< null, or it outlives this

    /// Per key 0 when up, else its amplitude; screens on any thread may read it, MAIN writes it.
    std::array<Relaxed<float>, _stop> keyDown;
    std::array<KeyRect, _stop> keyRects; ///< where to draw and touch each key
    double whiteKeyWidth = 0.0;          ///< points
    double lastWidth = -1.0;             ///< of the view at its last layout; -1 before the first

    /// The view's size in points; finite and above 0, else ignored. Lays the keys out, as wide as
    /// the split says, at first as setKeySizeProc() does. They may be wider than the view.
    void setSize(double width, double height);
    /// How wide the keys are altogether, points: what a screen scrolls over.
    double contentWidth() const { return keyRects.back().x + keyRects.back().width; }
    /// The first split: 21 white keys to the width, in points; finite and above 0, else ignored.
    void setKeySizeProc(double width);
    /// White keys to the view's width: 8 for 0, 15 for 1, 22 for 2; others are ignored.
    void setKeyboardSplit(int selector);
    /// Lays the keys out anew.
    void updateKeyRects();

    /// The key at a point of the keys' area; -1 for none.
    int getKeyboardKey(Point at) const { return keyAt(keyRects, at); }
    /// One less than there are, as those who ask for it count.
    int getTotalKeysNumber() const { return _stop - 1; }

    /// A locked keyboard keeps its keys down when their fingers end, until the next touch or
    /// allNoteOff(). Unlocking releases those whose finger is gone.
    void setLocked(bool locked);
    bool isLocked() const noexcept { return _isLocked; }

    /// Releases every key and forgets the fingers: they play again when they begin again.
    void allNoteOff();
    /// The same unless a finger is on the keyboard.
    void releaseAllNotes() override;

    /// A MIDI note, status 144 on or 128 off: data1 is the note, 48..96 is shown and sent on to the
    /// delegate, data2 the velocity, held to 0..127. Nothing else, and nothing while a finger is on
    /// the keyboard.
    void highlightKey_andData1_andData2(int status, int data1, int data2) override;
    /// The same for a key index below 49, without the delegate; nothing for a key that is touched.
    void justHighlightKey_andData1_andData2(int status, int data1, int data2);
    /// Tells the delegate: key up for status 128, otherwise key down with the key's amplitude. Keys
    /// that do not exist are ignored.
    void sendActionsStatus_forKey(int status, int key);

    /// For what plays keys without being a finger: presses key for holder (not null), and releases
    /// the one that it held. A key that does not exist, or an amplitude not above 0, releases only.
    void holdKey(const void* holder, int key, float amplitude);
    void releaseKey(const void* holder) { holdKey(holder, -1, 0.0f); }

protected:
    void fingerBegan(TouchId touch, Point at, double time) override;
    void fingerMoved(TouchId touch, Point at) override;
    void fingerEnded(TouchId touch, bool cancelled) override;

private:
    struct Touched {
        int key; // -1 for none
        float amplitude;
    };
    Touched touched(Point at) const;
    bool beginsChord(double time) const;
    void updateKeyStates();
    void releaseShown();
    void change(int key, float amplitude);
    void show(int status, int key, int velocity);
    void setKey(int key, float amplitude);

    bool _isLocked = false; // keys stay down when their fingers end
    KeyTouches touches_;
    std::bitset<_stop> shown_;                   // pressed by MIDI
    double whiteKeysAcross_ = kWhiteKeysAtFirst; // to the view's width
    double chordBegan_ = -kChordTime; // when the first finger of the last locked chord began
};

} // namespace zephyra
