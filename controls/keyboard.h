// Keyboard: what a stream asks of the keyboard that is shown with it.
#pragma once

namespace zephyra {

/// May be absent: notes then go straight to the pitch. MAIN.
class Keyboard {
public:
    virtual ~Keyboard() = default;
    static constexpr int kNoteShift = 12; ///< so far above a note its key is numbered
    virtual void releaseAllNotes() = 0;
    /// A MIDI message: status 144 is a note-on, data1 the key (the note + kNoteShift),
    /// data2 the velocity. Shows the key as pressed and plays it.
    virtual void highlightKey_andData1_andData2(int status, int data1, int data2) = 0;
};

} // namespace zephyra
