// MokKnobEnum, MokKnobTime, MokKnobHZ and MokKnobMidiNote: knobs that show names and units, of
// times, frequencies and notes.
#pragma once

#include "controls/curved_knobs.h"

#include <string>
#include <vector>

namespace zephyra {

/// Steps through named values: the value is always a whole number from 0 to names - 1, the first
/// one to begin with and by default. MAIN.
class MokKnobEnum : public MOK_KNOB {
public:
    explicit MokKnobEnum(std::string key = {}, std::vector<std::string> names = {});

    /// An empty list leaves one nameless value 0.
    void setNames(std::vector<std::string> names);
    const std::vector<std::string>& names() const noexcept { return names_; }
    /// The position of the value in names.
    int index() const;
    /// One step up or down, held at the ends; sends nothing.
    void step(int by);
    /// The name of the present value.
    std::string updateLabel() const override;

protected:
    float quantized(float v) const override; ///< the nearest position

private:
    using MOK_KNOB::setRange; // the names are the range

    std::vector<std::string> names_;
};

/// A time in seconds: shown in ms below one second, in s from there on. MAIN.
class MokKnobTime : public MOK_KNOB {
public:
    using MOK_KNOB::MOK_KNOB;
    std::string updateLabel() const override;
};

/// A frequency in Hz, exponential: shown in Hz below 1000, in kHz from there on. MAIN.
class MokKnobHZ : public MOK_KNOB_EXP {
public:
    using MOK_KNOB_EXP::MOK_KNOB_EXP;
    std::string updateLabel() const override;
};

/// A note number 0 to 127, shown by name: 60 is "C4", where it begins. MAIN.
class MokKnobMidiNote : public MOK_KNOB {
public:
    explicit MokKnobMidiNote(std::string key = {});
    /// The nearest note.
    int note() const;
    std::string updateLabel() const override;
};

/// "C4" for 60, with sharps; out of 0..127 the nearer end. Any thread.
std::string midiNoteName(int note);

} // namespace zephyra
