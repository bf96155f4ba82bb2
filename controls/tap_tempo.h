// MOK_TAP: a tempo from taps, drags and fine steps.
#pragma once

#include "controls/control.h"
#include "platform/threads/run_loop.h"

#include <string>

namespace zephyra {

/// Value-changed is sent whenever taps, steps or drags change the tempo. MAIN.
class MOK_TAP : public Control {
public:
    static constexpr double kLowestTempo = 20.0, kHighestTempo = 999.0; ///< beats per minute
    static constexpr double kFirstTapMemory = 3.0; ///< seconds until a single tap is forgotten
    static constexpr double kLongPress = 0.5;      ///< seconds until a press begins to repeat
    static constexpr double kRepeat = 0.1;         ///< seconds between the steps of a long press
    static constexpr double kPointsPerBeat = 4.0;  ///< of an upward drag per beat a minute

    /// runLoop forgets taps and repeats steps; it must outlive this.
    explicit MOK_TAP(RunLoop& runLoop, std::string key = {});
    ~MOK_TAP() override;

    double value() const { return value_; } ///< beats per minute; 120 at first
    /// Clamped; what is not finite is refused. Sends nothing.
    void setValue(double bpm);
    std::string label() const; ///< the tempo as shown

    /// A tap at a time in seconds (the run loop's now() without one). The second and each further
    /// one set the tempo and send value-changed, also when it is the same; one that is not later
    /// than the last is ignored. After two beats without a tap the next one is the first.
    void TapTimeSync(double now);
    void TapTimeSync() { TapTimeSync(runLoop_.now()); }
    void resetTapCounter();

    /// To the next quarter up or down; nothing at 999 and 20.
    void incrBPMFrac();
    void decrBPMFrac();
    /// A long press on "+" or "-" repeats its step from begin to end.
    void longPressEvent_plus(bool begins);
    void longPressEvent_minus(bool begins);

    /// A drag: begin, then the points moved upwards since then, any number of times.
    void beginTempoDrag();
    void tempoDrag(double pointsUp);

private:
    using Step = void (MOK_TAP::*)();
    void change(double bpm);
    void rememberTap(double now, double seconds);
    void longPress(Step step, bool begins);

    RunLoop& runLoop_;
    double value_ = 120.0;
    double lastTap_ = -1.0; // seconds; -1 for none
    double memory_ = 0.0;   // seconds after which the last tap no longer counts
    double dragStart_ = 120.0;
    RunLoop::Token forgetting_ = 0, repeating_ = 0;
    Step repeated_ = nullptr; // of the long press under way
};

} // namespace zephyra
