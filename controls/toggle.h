// Toggle: a switch that is on or off.
#pragma once

#include "controls/control.h"

#include <string>

namespace zephyra {

/// MAIN.
class Toggle : public Control {
public:
    explicit Toggle(std::string key = {}, bool on = false)
        : Control(std::move(key)), isOnByDefault(on), on_(on) {
        tag = on_ ? 1 : 0;
    }

    bool isOn() const noexcept { return on_; }
    /// Sends nothing. The tag follows.
    void setOn(bool on) noexcept;

    /// What a touch does: changes the state, then sends touch-down, value-changed and
    /// touch-up-inside. Nothing while interaction is off.
    void touch();

    /// What MIDI does: the same without a hand, value-changed alone.
    void trigger();

    /// When isDefaultResettable: back to isOnByDefault, then all control events are sent.
    void resetsDefault();

    bool isOnByDefault;

private:
    bool on_;
};

} // namespace zephyra
