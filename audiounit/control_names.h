// matchControl: which control a typed name means.
#pragma once

#include "stream/control_ranges.h"

#include <span>
#include <string_view>
#include <vector>

namespace zephyra {

/// What a name may mean.
struct ControlMatch {
    std::vector<ControlId> controls; ///< in their table's order; empty: nothing like it is known
    bool isCertain;                  ///< it is the one control; else it is only near to them
};

/// The controls among known that name means. Certain are a control's own name and an abbreviation
/// that only one has, of three letters at least ("jitter", "ring freq", "rnd len"). Other words for
/// a control, those of other instruments, only lead to it: what they mean elsewhere may run the
/// other way or count otherwise, and nobody would hear why. Case, spaces and punctuation do not
/// matter. Any thread but RENDER.
ControlMatch matchControl(std::string_view name, std::span<const ControlId> known);

} // namespace zephyra
