// checkCount, checkNesting: what PropertyListLimits say of a list while it grows or is written.
#pragma once

#include "platform/lists/property_list.h"

#include <cstddef>

namespace zephyra {

/// Refuses that many values, if they are beyond the limit. Any thread but RENDER.
Result<void> checkCount(std::size_t values, const PropertyListLimits& limits);

/// Refuses nesting of that many arrays and dictionaries, if it is beyond the limit. Any thread but
/// RENDER.
Result<void> checkNesting(std::size_t depth, const PropertyListLimits& limits);

} // namespace zephyra
