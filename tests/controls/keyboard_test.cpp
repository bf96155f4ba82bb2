// Which keys fingers, MIDI and others press, and what is said of it.

#include "controls/keyboard_tiny.h"
#include "controls/mok_keyboard.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr int kOn = 144, kOff = 128;

struct KeyboardTest : testing::Test, MOK_KeyboardDelegate, TouchListener, MOK_KeyboardTinyDelegate {
    KeyboardTest() {
        keyboard.mKeyboardDelegate = this;
        keyboard.touchListener = this;
        keyboard.setSize(210.0, 100.5); // white keys of 10 x 100 points
    }
    void say(char sign, int key) { heard += sign + std::to_string(key); }
    void keyDown_keyNum_forAmp(MOK_Keyboard*, int key, float amplitude) override {
        say('+', key);
        last = amplitude;
    }
    void keyUp_keyNum(MOK_Keyboard*, int key) override { say('-', key); }
    void hear(Finger finger, const char* letters) { fingers += letters[finger == Finger::second]; }
    void touchBegan(Finger finger, Point at, double) override {
        hear(finger, "AB");
        lastAt = at;
    }
    void touchMoved(Finger finger, Point, double) override { hear(finger, "mn"); }
    void touchEnded(Finger finger, double) override { hear(finger, "ab"); }
    void getKeyboardTiny_numKey_Hz_andAmp(MOK_KeyboardTiny*, int key, double hz,
                                          float amplitude) override {
        say(amplitude > 0.0f ? '+' : '-', key);
        last = static_cast<float>(hz);
    }
    void midi(int status, int note, int velocity) {
        keyboard.highlightKey_andData1_andData2(status, note, velocity);
    }

    MOK_Keyboard keyboard;
    std::string heard, fingers;
    float last = 0.0f;
    Point lastAt;
};

constexpr Point whiteKey(int number, double y = 50.0) {
    return {number * 10.0 + 5.0, y};
}

TEST_F(KeyboardTest, FindsTheKeyThatIsSeenAtAPoint) {
    const std::pair<Point, int> cases[] = {
        {{9.0, 57.9}, 1},   {{9.0, 58.0}, 0},   {{7.24, 1.0}, 0},   {{12.74, 1.0}, 1},
        {{12.76, 1.0}, 2},  {{30.0, 1.0}, 5},   {{40.0, 1.0}, 6},   {{289.9, 99.9}, 48},
        {{279.9, 1.0}, 47}, {{290.0, 1.0}, -1}, {{5.0, 100.0}, -1}, {{-0.1, 5.0}, -1}};
    for (const auto& [at, key] : cases)
        EXPECT_EQ(keyboard.getKeyboardKey(at), key) << at.x << ", " << at.y;
    for (const auto& [selector, across] : {std::pair{0, 8.0}, {1, 15.0}, {2, 22.0}, {3, 22.0}}) {
        keyboard.setKeyboardSplit(selector);
        keyboard.setSize(420.0, 50.0);
        EXPECT_NEAR(keyboard.contentWidth(), 29 * 420.0 / across, 1e-9) << selector;
    }
}

TEST_F(KeyboardTest, HasThoseKeysDownThatAreHeld) {
    keyboard.touchesBegan(1, whiteKey(0), 0.0);
    keyboard.touchesMoved(1, {10.0, 29.0}, 0.1);
    EXPECT_FLOAT_EQ(last, 0.6f); // half way down a black key
    keyboard.touchesBegan(2, {10.0, 0.0}, 0.2);
    keyboard.touchesMoved(1, whiteKey(1), 0.3); // the second finger holds key 1
    keyboard.touchesBegan(2, whiteKey(3), 0.3); // an identity in use
    keyboard.touchesMoved(2, {0.0, std::nan("")}, 0.4);
    keyboard.touchesBegan(3, {std::nan(""), 0.0}, 0.4);
    EXPECT_TRUE(keyboard.keyDown[5] > 0.0f && keyboard.numberOfTouches() == 2);
    keyboard.touchesCancelled(2, 0.5);
    for (const int key : {4, 2, 49}) keyboard.holdKey(this, key, 1.0f);
    keyboard.allNoteOff();
    keyboard.touchesMoved(1, whiteKey(2), 0.6); // forgotten
    EXPECT_EQ(heard, "+0-0+1+2-1+5-5+4-4-2");
}

TEST_F(KeyboardTest, ShowsMidiNotesOnlyWhileNoHandPlays) {
    for (const int note : {47, 97, -1, 500}) midi(kOn, note, 100);
    midi(kOn, 48, 64);
    EXPECT_FLOAT_EQ(last, 64.0f / 127.0f);
    midi(kOn, 96, 64);
    midi(kOff, 96, 64);
    keyboard.releaseKey(this);                  // held nothing
    keyboard.touchesBegan(1, whiteKey(0), 0.0); // plays the key that MIDI pressed anew
    midi(kOn, 60, 100);
    midi(kOff, 48, 0);
    keyboard.releaseAllNotes();
    keyboard.touchesMoved(1, whiteKey(1), 0.5);
    keyboard.touchesEnded(1, 1.0);
    keyboard.justHighlightKey_andData1_andData2(kOn, 3, 127);
    keyboard.justHighlightKey_andData1_andData2(kOn, 49, 127);
    keyboard.releaseAllNotes();
    EXPECT_EQ(heard, "+0+48-48-0+0-0+2-2-3");
}

TEST_F(KeyboardTest, KeepsALockedChordUntilTheNextTouch) {
    keyboard.setLocked(true);
    const auto tap = [&](TouchId id, int white, double time) {
        keyboard.touchesBegan(id, whiteKey(white), time);
        keyboard.touchesEnded(id, time + 0.01);
    };
    tap(1, 0, 1.0);
    tap(2, 2, 1.0 + 0.9 * MOK_Keyboard::kChordTime);
    tap(1, 1, 2.0);
    midi(kOff, 50, 0);
    keyboard.releaseKey(this); // held nothing
    tap(1, 0, 3.0);
    keyboard.releaseAllNotes(); // no finger is there any more
    tap(1, 1, 4.0);
    keyboard.setLocked(false);
    EXPECT_EQ(heard, "+0+4-0-4+2-2+0-0+2-2");
}

TEST_F(KeyboardTest, HandsItsFirstTwoFingersOn) {
    keyboard.touchesBegan(1, whiteKey(0), 0.0);
    keyboard.touchesBegan(2, {145.0, 25.125}, 0.0); // the keys are 290 points wide
    EXPECT_EQ(lastAt, (Point{0.5, 0.25}));
    keyboard.touchesBegan(3, whiteKey(2), 0.0);
    keyboard.touchesEnded(1, 0.1);
    for (const TouchId touch : {3, 2}) keyboard.touchesMoved(touch, whiteKey(3), 0.1);
    keyboard.touchesBegan(4, whiteKey(3), 0.2);
    keyboard.allNoteOff();
    EXPECT_EQ(fingers, "ABanAba");
    for (TouchId neverEnds = 5; neverEnds < 50; ++neverEnds)
        keyboard.touchesBegan(neverEnds, whiteKey(0), 0.3);
    EXPECT_EQ(keyboard.numberOfTouches(), TouchSurface::kMostFingers);
}

TEST_F(KeyboardTest, SpeaksFrequenciesWhenItIsTheTinyOne) {
    MOK_KeyboardTiny tiny;
    tiny.delegate = this;
    tiny.setSize(70.0, 100.5);
    tiny.touchesBegan(1, {55.0, 90.0}, 0.0);
    EXPECT_FLOAT_EQ(last, 440.0f);
    tiny.touchesMoved(1, {60.0, 1.0}, 0.1);
    tiny.setOctave(5); // ends the note that it began
    EXPECT_FLOAT_EQ(last, 466.1637615f);
    EXPECT_EQ(heard, "+9-9+10-10");
    EXPECT_NEAR(tiny.frequency(0), 523.2511306, 1e-6);
}

} // namespace
} // namespace zephyra
