// LfoWidgetWrapper: the routing of an LFO to the control it drives, with its two kinds.
#pragma once

#include "modulation/control_mover.h"
#include "modulation/lfo.h"

#include <cstdint>
#include <memory>

namespace zephyra {

/// Adds to a wrapper's state: "Shape" and "ClockSub" (whole numbers), "LinkSwitch" (a boolean),
/// "ClockSubMult" and "Hz" (reals; the last one is the free rate). MAIN.
class LfoWidgetWrapper : public WidgetWrapper, public LFO_CONTROL_WRAPPER_DELEGATE {
public:
    static constexpr double kFirstRate = 0.25; ///< Hz
    static constexpr int kFirstClockSub = 7;   ///< a quarter note
    static constexpr double kLeastMult = 1.0 / 64, kMostMult = 64.0;

    /// mover: of the control, not null. bpm: the tempo that a link follows. random must outlive
    /// this. The phase is set so that the control does not jump.
    LfoWidgetWrapper(Control& control, std::unique_ptr<ControlMover> mover, double bpm,
                     RandomSource& random);
    ~LfoWidgetWrapper() override;

    MOK_LFO currentLFO;

    /// Also sets the phase anew, for the control to go on from where it stands.
    void setLfoShapeFromWrapper(std::int64_t shape);
    /// The free rate in Hz, kept while linked.
    void setHz(double hz);
    double freeHz() const { return freeHz_; }
    void setLinkIsEnabled(bool on);
    bool linkIsEnabled() const { return linked_; }
    /// Position in kNoteValues; held to the list.
    void setClockSub(int index);
    int clockSub() const { return clockSub_; }
    /// So many note values make a cycle; held to kLeastMult..kMostMult, not finite is refused.
    void setClockSubMult(double mult);
    double clockSubMult() const { return clockSubMult_; }
    /// A tempo that is not above 0 or not finite counts as 120.
    void setTempo(double bpm);
    void setPhase(double phase) { currentLFO.setPhase(phase); }

    /// While suspended the LFO goes on and the control stands.
    void setSuspended(bool on);
    bool isSuspended() const { return suspended_; }

    /// Where the control was set, in its own unit: where it stood when the LFO took it over, and
    /// then wherever a hand puts it, though the LFO carries it on from there.
    float baseValue() const { return base_; }
    void setBaseValue(float value) { base_ = value; }

    PropertyDictionary state() const override;
    /// Sets the phase anew as well.
    void applyState(PropertyReader& state) override;

    /// Chooses the phase for where the control stands now; outside the range the nearer end counts.
    void resetPhase();

    /// The LFO begins again, and the control stands where it stood then, unless suspended or under
    /// a hand.
    void startAnew();

    /// Moves the control there within its range, unless suspended or under a hand.
    void lfoValue(double value) override;

private:
    void applyRate();
    void followHand();

    std::unique_ptr<ControlMover> mover_;
    float began_ = 0.0f; // ControlMover::value() when the phase was chosen
    float base_ = 0.0f;
    bool isTouched_ = false, isMoving_ = false; // by a hand; by the LFO, just now
    bool suspended_ = false, linked_ = false;
    double freeHz_ = kFirstRate, clockSubMult_ = 1.0, bpm_;
    int clockSub_ = kFirstClockSub;
};

/// To a knob or slider, which it turns. MAIN.
class MOK_KNOB_LFO_CONTROL_WRAPPER final : public LfoWidgetWrapper {
public:
    MOK_KNOB_LFO_CONTROL_WRAPPER(MOK_KNOB& knob, double bpm, RandomSource& random);
};

/// To a scan, which it moves through a stream's sound. MAIN.
class LfoScrubWaveFormWidgetWrapper final : public LfoWidgetWrapper {
public:
    LfoScrubWaveFormWidgetWrapper(ScanTarget& scan, double bpm, RandomSource& random);
};

} // namespace zephyra
