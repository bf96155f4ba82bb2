#include "platform/lists/property_list_limits.h"

#include <algorithm>

namespace zephyra {

Result<void> checkCount(std::size_t values, const PropertyListLimits& limits) {
    if (values <= limits.values) return {};
    return Failure{"a property list of more than " + std::to_string(limits.values) +
                   " values is too large; use fewer"};
}

Result<void> checkNesting(std::size_t depth, const PropertyListLimits& limits) {
    const int most = std::min(limits.depth, PropertyListLimits().depth);
    if (depth <= static_cast<std::size_t>(std::max(most, 0))) return {};
    return Failure{"arrays and dictionaries nested more than " + std::to_string(most) +
                   " deep cannot be kept; nest them less"};
}

} // namespace zephyra
