// ButtonTouch: the parts of a press on a button, and how they reach its control.
#pragma once

#include "controls/control.h"

namespace zephyra {

/// A key's press is down and inside at once.
enum class ButtonTouch {
    down,
    inside,  ///< let go over the button: it is pressed
    outside, ///< let go elsewhere: nothing was pressed
};

/// Tells button, so that its targets act, and a host hears of a whole gesture. MAIN.
inline void sendTouch(Button& button, ButtonTouch touch) {
    constexpr ControlEvents kEvents[] = {control_event::touchDown, control_event::touchUpInside,
                                         control_event::touchUpOutside};
    button.sendActionsForControlEvents(kEvents[static_cast<std::size_t>(touch)]);
}

} // namespace zephyra
