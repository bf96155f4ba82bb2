// controlMeaning: what each control does, in a line for people.
#pragma once

#include "stream/control_ranges.h"

namespace zephyra {

/// A sentence or two of at most 78 characters, without the range. Any thread.
const char* controlMeaning(ControlId id) noexcept;

} // namespace zephyra
