// Reads property lists: which of the two forms it is, and whether it is too large.

#include "platform/lists/property_list_forms.h"

#include <new>

namespace zephyra {

Result<PropertyValue> readPropertyList(std::span<const std::byte> bytes,
                                       const PropertyListLimits& limits) try {
    if (bytes.size() > limits.bytes)
        return Failure{"a property list of " + std::to_string(bytes.size()) +
                       " bytes is too large; " + std::to_string(limits.bytes) +
                       " are read at most"};
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return text.starts_with("bplist00") ? readBinaryPropertyList(bytes, limits)
                                        : readXmlPropertyList(text, limits);
} catch (const std::bad_alloc&) {
    return Failure{"the property list needs more memory than there is; use a smaller one"};
}

} // namespace zephyra
