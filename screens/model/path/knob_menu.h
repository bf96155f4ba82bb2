// knobMenu: the rows of a knob's menu.
#pragma once

#include "screens/model/path/knob_hand.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

/// What a menu needs of the window. copy and paste: the clipboard's text.
struct KnobMenuCalls {
    std::function<void(const std::string& text)> copy;
    std::function<std::string()> paste;
    std::function<void()> typeValue;
    std::function<void(const std::string& sentence)> tell; ///< what could not be pasted
};

/// Rows of the knob as it stands now; hand, and what calls refers to, outlive them. Message thread.
std::vector<MenuRow> knobMenu(ScreenContext& context, KnobHand& hand, ControlId id,
                              KnobMenuCalls calls);

} // namespace zephyra
