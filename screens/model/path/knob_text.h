// KnobText: a control's value as the path shows it, number and unit apart.
#pragma once

#include "platform/text/result.h"
#include "stream/control_ranges.h"

#include <string>
#include <string_view>

namespace zephyra {

struct KnobText {
    std::string number; ///< three digits, with a true minus
    std::string unit;   ///< empty where there is none
    /// Both as one text that reads back.
    std::string whole() const { return unit.empty() ? number : number + " " + unit; }
    bool operator==(const KnobText&) const = default;
};

/// Of a displayed value. Numbers of a thousand and more have the larger unit. Any thread but
/// RENDER.
KnobText knobText(const ControlRange& range, float displayed);

/// The linear value that a typed text means, in any of the control's units. The failure says what
/// would be right. Any thread but RENDER.
Result<float> linearFromTyped(const ControlRange& range, std::string_view text);

} // namespace zephyra
