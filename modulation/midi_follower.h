// MidiFollower: moves the control of one MIDI mapping, with soft takeover where it would jump.
#pragma once

#include "controls/knob.h"
#include "controls/scan_target.h"
#include "controls/toggle.h"
#include "modulation/midi_binding.h"

#include <optional>

namespace zephyra {

/// Knobs, toggles and scans wait until the controller comes to where they stand, or to the end of
/// the binding's range that is nearest to that, and again whenever somebody else has moved them. A
/// scan, which moves by itself, waits again only after a hand held it. A note toggles a toggle, and
/// a button is pressed as its value rises through a half: neither waits. MAIN.
class MidiFollower {
public:
    /// binding is a checked one. Its control must outlive this.
    explicit MidiFollower(const MidiBinding& binding);

    /// The controller came to value, 0..1. May call any action; whoever calls keeps this alive.
    void take(double value);
    /// The controller stands at value, which moves nothing by itself.
    void watch(double value) { place_ = placeAt(value); }
    bool waits() const;
    /// The controller has not been heard of, and its wheel rests.
    void startAnew();

    /// Whether it adds a bend to control.
    bool bends(const Control& control) const {
        return binding_.relative && binding_.control == &control;
    }
    /// A note has put that control where it stands: it is bent from there on, to value. Sends
    /// nothing.
    void carry(double value);

private:
    double bentBy(double value) const;
    float placeAt(double value) const;
    void bend(double value);
    float stands() const;
    bool isHeld() const;
    bool follows() const;
    bool reaches(float place) const;
    void moveTo(float place);
    void press() const;

    const MidiBinding binding_;
    MOK_KNOB* const knob_; // one of these
    Toggle* const toggle_;
    Button* const button_;
    ScanTarget* const scan_;
    std::optional<float> place_; // of the controller
    std::optional<float> set_;   // where we moved the control; none while it waits
    double base_ = 0.0;          // of a relative bend: where the control would stand without it
};

} // namespace zephyra
