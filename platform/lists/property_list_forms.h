// readXmlPropertyList, readBinaryPropertyList: the two forms behind readPropertyList.
#pragma once

#include "platform/lists/property_list.h"

#include <cstddef>
#include <span>
#include <string_view>

namespace zephyra {

// Both keep to the limits of depth and values before anything is kept, leave the one of bytes to
// the caller, and throw std::bad_alloc alone. Any thread but RENDER.

Result<PropertyValue> readXmlPropertyList(std::string_view text, const PropertyListLimits& limits);

/// limits.bytes bounds what is referred to, counted as often as it is; see
/// property_list_binary.cpp.
Result<PropertyValue> readBinaryPropertyList(std::span<const std::byte> bytes,
                                             const PropertyListLimits& limits);

} // namespace zephyra
