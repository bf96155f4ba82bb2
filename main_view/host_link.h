// HostLink: keeps a host's parameters and the controls at the same values.
#pragma once

#include "audiounit/parameter_table.h"
#include "controls/control.h"
#include "platform/audio_unit/audio_unit_parameters.h"
#include "platform/threads/state_order.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

namespace zephyra {

class AudioUnitViewController;

/// Tells the host what moves a control, and moves the control that the host sets. What is newer
/// stays: a value that is on its way from another thread, or was set after a state was asked for.
/// MAIN.
class HostLink {
public:
    /// view outlives this.
    explicit HostLink(AudioUnitViewController& view) : view_(view) {}
    HostLink(const HostLink&) = delete;
    HostLink& operator=(const HostLink&) = delete;

    /// The view controller has a unit: from now on what its parameters stand at is known.
    void adopt();
    /// From now on the unit's host hears of the controls; once more does nothing.
    void connect();
    /// The opposite, also of a gesture that has not ended.
    void letGo();
    /// The same, and the unit goes.
    void disconnect();

    /// A host has set it, and is told nothing of what follows. Above the table: ignored.
    void hostMoved(AUParameterAddress address, AUValue value);
    /// Whether that is under way.
    bool isMoving() const { return isMoving_; }
    /// How often a host has moved it; wraps. 0 above the table.
    std::uint32_t moves(ControlId id) const;

    /// Writes what controls stand at where nothing newer is on its way to them.
    void refresh();
    void refresh(ControlId id);
    /// What the button is now, unless the host knows.
    void tellButton(ControlId id);
    /// A hand on the scan, which has no control that tells the host.
    void scanMoved(ControlEvents event);

    /// Whose values come between these two: of a state that was asked for then. What was set since
    /// comes back at the end.
    void beginState(StateOrder::Number asked) { restoring_ = asked; }
    void endState();
    /// Inside them, a parameter that an undo or the like changes has a gesture of its own, as of a
    /// hand; the scan where that places it, for else it moves by itself.
    enum class Scan : std::uint8_t { isPlaced, movesOn };
    void beginGestures(Scan scan) { gestures_ = {.scan = scan}; }
    void endGestures();

private:
    struct Gestures {
        Scan scan = Scan::movesOn;
        std::bitset<kParameterCount> touched{}; // so far
    };

    void addTargets(const ParameterRow& row);
    void addButtonTargets(ControlId id);
    void buttonWasLeft(ControlId id);
    void tellButtons();
    void tell(const ParameterRow& row, AUParameterAutomationEventType type);
    void touchForHand(ControlId id);
    bool keepValue(const ParameterRow& row, AUValue value);
    AUValue controlValue(ControlId id) const;
    AUParameter& parameterOf(ControlId id) const;
    AUValue& known(ControlId id) { return known_[static_cast<std::size_t>(id)]; }
    Control* boundTo(const ParameterRow& row) const;

    AudioUnitViewController& view_;
    AUParameterObserverToken observer_ = 0;
    bool isMoving_ = false;                  // a control that the host moves does not tell the host
    StateOrder::Number restoring_ = 0;       // the state that moves controls; 0 for none
    std::bitset<kParameterCount> inGesture_; // parameters that a hand is at
    std::optional<Gestures> gestures_;
    /// The value of each parameter that MAIN knows of. One that differs came from RENDER or another
    /// thread, and is on its way to the control.
    std::array<AUValue, kParameterCount> known_{};
    std::array<std::uint32_t, kParameterCount> moves_{};
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true); // posted tasks look at it
};

} // namespace zephyra
