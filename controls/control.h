// Control: what every control is, a key, some looks as plain data, and targets that events go to.
#pragma once

#include "controls/control_events.h"

#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

/// Components 0..1.
struct Color {
    float red = 0.0f, green = 0.0f, blue = 0.0f, alpha = 1.0f;
    bool operator==(const Color&) const = default;
};

struct Point {
    double x = 0.0, y = 0.0; ///< points; y grows downwards
    bool operator==(const Point&) const = default;
};
inline bool isFinite(Point p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// The red of everything that runs: a playing button's tint, a frozen one's.
inline constexpr Color kActiveRed{0.9882353f, 0.2117647f, 0.1137255f, 1.0f};
/// The background of a button that waits for the downbeat.
inline constexpr Color kArmedRed{kActiveRed.red, kActiveRed.green, kActiveRed.blue, 0.33f};

/// A control without a value. It draws nothing: a screen draws its fields. MAIN.
class Control {
public:
    Control() = default;
    /// key: the channel that states and parameters know it by.
    explicit Control(std::string key) : channel(std::move(key)) {}
    virtual ~Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    using Action = std::function<void(Control& sender)>;

    /// Calls action at every event in events, after those added before. target says whose it is and
    /// is never followed; name is the action's, for taking it away again. Adding the same target,
    /// name and events again replaces the action in its place. No events or an empty action:
    /// ignored.
    void addTarget(const void* target, std::string name, ControlEvents events, Action action);

    /// Takes away target's actions of that name (all names when empty) for these events; an action
    /// goes when none of its events is left.
    void removeTarget(const void* target, std::string_view name, ControlEvents events);

    /// Calls every action that has one of events, once each. An action may add and remove targets:
    /// those removed meanwhile are no longer called, those added are not called yet. It must not
    /// destroy the control.
    void sendActionsForControlEvents(ControlEvents events);

    /// Value-changed events are not sent while this is set.
    bool suppressesEvents = false;
    /// Sends the value-changed event unless sending is suppressed.
    void sendEventValueChanged();

    /// Whether one of events is being sent.
    bool isSending(ControlEvents events) const { return (sending_ & events) != 0; }

    /// Whether an action of target with that name is there.
    bool hasTarget(const void* target, std::string_view name) const;

    std::string channel;
    std::string title;    ///< what a button or label shows
    std::int32_t tag = 0; ///< state of a button: 1 on, 0 off
    bool hidden = false;
    bool selected = false;
    bool userInteractionEnabled = true;   ///< whether touches reach it
    float alpha = 1.0f;                   ///< 0 transparent .. 1
    std::optional<Color> tintColor;       ///< none: the skin's own
    std::optional<Color> backgroundColor; ///< none: clear
    bool isRandomizable = true;           ///< whether genRandomic moves it
    bool isDefaultResettable = true;      ///< whether resetsDefault moves it
    bool skipFromPreset = false;          ///< left out of preset recall

    /// How often its looks changed in a way that wants a redraw, for screens to compare.
    std::uint64_t needsDisplayCount = 0;
    void setNeedsDisplay() { ++needsDisplayCount; }

private:
    struct Target {
        const void* target;
        std::string name;
        ControlEvents events;
        Action action;
        std::uint64_t number; // in the order of addition
    };
    ControlEvents sending_ = 0;
    std::vector<Target> targets_;
    std::uint64_t nextNumber_ = 1;
};

/// A button: its state, if it has one, is its tag. A hand presses it by touch-up-inside, before
/// which a screen may send touch-down.
class Button : public Control {
public:
    using Control::Control;

    /// What MIDI, a host or a state does: the same without a hand.
    void trigger();
    bool isTriggered() const { return triggered_; }
    /// Whether a hand's press is being told right now.
    bool isPressed() const { return isSending(control_event::touchUpInside) && !triggered_; }

private:
    bool triggered_ = false;
};

} // namespace zephyra
