// UserDefaults: small settings that outlive the program, in one property-list file.
#pragma once

#include "platform/lists/property_list.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace zephyra {

class Log;

/// A dictionary by key. With a path it is read once and written, completely or not at all, on every
/// change; a file that cannot be read is left as it is and nothing is written until the next
/// program start. Without one it lives in memory only. MAIN.
class UserDefaults {
public:
    UserDefaults() = default;
    /// log must outlive this and what it is assigned to.
    UserDefaults(std::filesystem::path path, Log& log);

    /// Null when there is none.
    const PropertyValue* value(std::string_view key) const;
    /// A failed write is logged; the value holds in memory all the same.
    void setValue(std::string key, PropertyValue value);
    void removeValue(std::string_view key);

private:
    void save();

    std::filesystem::path path_; // empty: memory only
    Log* log_ = nullptr;         // null: memory only
    PropertyDictionary values_;
};

} // namespace zephyra
