// PropertyListScan: what a property list's bytes hold, found without trusting them.
#pragma once

#include "platform/lists/property_list.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace zephyra {

/// The parser behind readPropertyList forgives much: numbers that are none become 0, damaged data
/// becomes empty, keys without a value vanish, dates beyond 68 years are clipped, a real depends on
/// the locale, and deep nesting ends it. So the bytes are scanned first, completely and strictly,
/// and the numbers are taken from here.
struct PropertyListScan {
    std::size_t values = 0;             ///< strings to dictionaries, without the keys
    std::vector<PropertyValue> numbers; ///< whole numbers, reals and dates, as they follow in it
};

/// text: without carriage returns. Any thread but RENDER.
Result<PropertyListScan> scanXmlPropertyList(std::string_view text,
                                             const PropertyListLimits& limits);

/// Any thread but RENDER.
Result<PropertyListScan> scanBinaryPropertyList(std::span<const std::byte> bytes,
                                                const PropertyListLimits& limits);

/// Refuses that many values, if they are beyond the limit.
Result<void> checkCount(std::size_t values, const PropertyListLimits& limits);

/// Refuses nesting of that many arrays and dictionaries, if it is beyond the limit.
Result<void> checkNesting(std::size_t depth, const PropertyListLimits& limits);

} // namespace zephyra
