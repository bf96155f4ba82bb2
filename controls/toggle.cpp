#include "controls/toggle.h"

namespace zephyra {

void Toggle::setOn(bool on) noexcept {
    if (on != on_) setNeedsDisplay();
    on_ = on;
    tag = on_ ? 1 : 0;
}

void Toggle::touch() {
    if (!userInteractionEnabled) return;
    setOn(!on_);
    sendActionsForControlEvents(control_event::touchDown);
    sendEventValueChanged();
    sendActionsForControlEvents(control_event::touchUpInside);
}

void Toggle::trigger() {
    if (!userInteractionEnabled) return;
    setOn(!on_);
    sendEventValueChanged();
}

void Toggle::resetsDefault() {
    if (!isDefaultResettable) return;
    setOn(isOnByDefault);
    sendActionsForControlEvents(control_event::all);
}

} // namespace zephyra
