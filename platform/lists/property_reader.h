// PropertyReader: takes typed values out of a dictionary and remembers which keys it knew.
#pragma once

#include "platform/lists/property_list.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace zephyra {

/// Reads one dictionary. A key that is missing answers nothing; one of the wrong type answers
/// nothing after a log line that names key, type found and type wanted. Reals are also taken from
/// whole numbers, booleans from the whole numbers 0 and 1. Any thread but RENDER; the dictionary
/// must outlive it.
class PropertyReader {
public:
    /// where: the path of the dictionary for log lines, empty at the top.
    explicit PropertyReader(const PropertyDictionary& dictionary, std::string where = {});

    std::optional<double> real(std::string_view key); ///< finite
    std::optional<std::int64_t> whole(std::string_view key);
    std::optional<bool> boolean(std::string_view key);
    std::optional<std::string> text(std::string_view key);
    const PropertyData* data(std::string_view key);             ///< null for none
    const PropertyArray* array(std::string_view key);           ///< null for none
    const PropertyDictionary* dictionary(std::string_view key); ///< null for none

    /// The entries that were never asked for: what a newer program wrote and an older one hands
    /// back.
    PropertyDictionary unknown() const;

private:
    template <typename Type>
    const Type* find(std::string_view key, const char* wanted);
    const PropertyValue* value(std::string_view key);
    void complain(std::string_view key, const PropertyValue& found, const char* wanted) const;

    const PropertyDictionary& dictionary_;
    std::string where_;
    std::set<std::string, std::less<>> asked_;
};

} // namespace zephyra
