// KnobHand: what hands do to the controls of the path.
#pragma once

#include "controls/touch_listener.h"
#include "screens/model/path/knob_bond.h"
#include "screens/model/screen_context.h"
#include "stream/control_ranges.h"

#include <map>
#include <optional>
#include <string>

namespace zephyra {

class MOK_KNOB;

/// How far the same movement goes.
enum class Fineness { coarse, fine };

/// The two ends of a modulation's sweep.
enum class BondEnd { from, to };

/// Every way in which a hand moves a knob goes through the control's own tracking or events, so
/// that hosts hear a gesture, and through ScreenContext::beginEdit and endEdit. Message thread, not
/// inside ScreenSource::asMain.
class KnobHand {
public:
    explicit KnobHand(ScreenContext& context);
    /// Ends what is under way.
    ~KnobHand();
    KnobHand(const KnobHand&) = delete;
    KnobHand& operator=(const KnobHand&) = delete;

    // --- A pointer's life. Points are units, y downwards; centre is the knob's. ---

    /// False where another pointer, also of another window, holds that control, or this one
    /// another: then it is nobody's.
    bool begin(TouchId pointer, ControlId id, Point at, Point centre);
    /// Fine: the knob goes a tenth as far from here on.
    void move(TouchId pointer, Point to, Fineness fineness);
    void end(TouchId pointer);
    void cancel(TouchId pointer); ///< what moved stays moved
    /// Whether the pointer holds a knob and has not turned it.
    bool isTapping(TouchId pointer) const;

    // --- Steps: a wheel's, the keyboard's. Those that follow soon are one gesture. ---

    /// So many notches up, down: each a semitone, a position of a choice, or a fiftieth of the
    /// turn; fine ones a tenth of that, but for positions.
    void turn(ControlId id, double notches, Fineness fineness, double now);
    /// To a linear value, as part of such a gesture.
    void turnTo(ControlId id, float linear, double now);
    /// To an end of the range.
    void turnToEnd(ControlId id, bool maximum, double now);
    /// Ends a gesture of steps after a moment without one. now: on the clock of turn().
    void frame(double now);
    /// Ends it now, if there is one; before an undo.
    void endSteps();

    // --- At once ---

    void reset(ControlId id);
    void randomise(ControlId id);
    /// What was typed, in any of the control's units; the failure, for the player, says what would
    /// be right, and nothing has changed.
    Result<void> type(ControlId id, const std::string& text);
    /// Turns a switch over: Echo, Ring, Sync.
    void flip(ControlId id);
    void pickEnvelope(std::size_t menuIndex);
    /// Keeps what LIVE heard as a file.
    void keepLive();

    // --- Modulation ---

    void assign(ControlId id, AssignmentType type);
    /// The next MIDI message that is moved; once more to stop waiting for it.
    void learnMidi(ControlId id);
    /// One end of what a source sweeps, a fraction of the turn. From beginRange to endRange is one
    /// edit.
    void beginRange(ControlId id);
    void moveRange(ControlId id, BondEnd end, float place);
    void endRange();
    void lock(ControlId id, bool on); ///< randomise leaves it alone

private:
    struct Held {
        ControlId id;
        Point centre, real, told; // where the pointer is, and where the knob believes it
        bool moved = false;
    };
    struct Steps {
        ControlId id;
        double rest = 0.0; // of a position that has not been reached
        double until = 0.0;
    };

    void beginEdit(const std::string& name);
    void endEdit();
    void beginSteps(ControlId id, double now);
    void finish(TouchId pointer, bool cancelled);
    template <typename Change>
    void gesture(ControlId id, const std::string& name, Change&& change);

    ScreenContext& context_;
    std::map<TouchId, Held> held_;
    std::optional<Steps> steps_;
};

} // namespace zephyra
