// ScrubWidgetWrapper: the routing of a finger's vertical movement to a control, with its kinds.
#pragma once

#include "modulation/control_mover.h"

#include <memory>

namespace zephyra {

/// Adds to a wrapper's state: "Velocity" (a real) and "SecondFinger" (a boolean). MAIN.
class ScrubWidgetWrapper : public WidgetWrapper {
public:
    static constexpr double kLeastVelocity = 0.05, kMostVelocity = 8.0;

    /// mover: of the control, not null.
    ScrubWidgetWrapper(Control& control, std::unique_ptr<ControlMover> mover, bool secondFinger);

    /// So often a movement over the whole surface sweeps the range; held to the constants, not
    /// finite is refused.
    void setVelocity(double velocity);
    double velocity() const { return velocity_; }
    bool followsSecondFinger() const { return secondFinger_; }

    PropertyDictionary state() const override;
    /// Another finger begins anew.
    void applyState(PropertyReader& state) override;

    /// The finger's life. Movements are upwards, fractions of the surface's height, also of a
    /// finger that was there before the wrapper. A control under a hand is left alone.
    void begin();
    void moveBy(double up);
    virtual void end() { anchored_ = false; }

    /// Goes on following for so many seconds. False when nothing moves.
    bool follow(double seconds);
    bool isFollowing() const { return following_; }

protected:
    /// The next movement begins wherever the control stands then.
    void stop();

private:
    std::unique_ptr<ControlMover> mover_;
    double velocity_ = 1.0;
    bool secondFinger_;
    double part_ = 0.0; // of the range, where the finger points
    bool anchored_ = false, following_ = false;
};

/// MAIN.
class ScrubKnobWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubKnobWidgetWrapper(MOK_KNOB& knob, bool secondFinger);
};

/// A slider is a knob that looks otherwise.
using ScrubSliderWidgetWrapper = ScrubKnobWidgetWrapper;

/// Moves the pad's y. MAIN.
class ScrubPadWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubPadWidgetWrapper(MOK_PAD& pad, bool secondFinger);
};

/// Plays one key after the other, until the finger ends. MAIN.
class ScrubKeyboardWidgetWrapper final : public ScrubWidgetWrapper {
public:
    ScrubKeyboardWidgetWrapper(MOK_Keyboard& keyboard, bool secondFinger);

    void end() override { stop(); }
};

} // namespace zephyra
