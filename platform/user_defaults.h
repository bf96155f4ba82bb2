// UserDefaults: small settings that outlive the program, in one property-list file.
#pragma once

#include "platform/lists/property_list.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

class Log;

/// A dictionary by key, without a path in memory only. With one, several programs may share the
/// file: it is read here once; a change reads it anew, changes what it is about, and replaces the
/// file completely or not at all, all under a lock. A file that is no property list is kept under
/// another name (settings.plist as settings.unreadable.plist) once something is to be written; one
/// that cannot be opened is left as it is. MAIN, or one thread at a time.
class UserDefaults {
public:
    /// May be made again from the dictionary in the file.
    using Change = std::function<void(PropertyDictionary& values)>;

    UserDefaults() = default;
    /// log must outlive this and what it is assigned to. It hears of what fails, of the same once.
    UserDefaults(std::filesystem::path path, Log& log);
    UserDefaults(UserDefaults&&) = default;
    UserDefaults& operator=(UserDefaults&&) = default;
    /// Tries once more to write what waits.
    ~UserDefaults();

    /// Null when there is none.
    const PropertyValue* value(std::string_view key) const;

    /// One that cannot be written, as while another program holds the lock, holds in memory all
    /// the same and is written with the next one; the first waits for a fifth of a second at most.
    void change(Change change);
    void setValue(std::string key, PropertyValue value);
    void removeValue(std::string_view key);

    /// Writes what waits to be written; false while that fails.
    bool flush();

private:
    Result<void> write();
    Result<PropertyDictionary> readToChange();
    Result<void> setAside(const std::string& problem);
    PropertyDictionary writable(PropertyDictionary values) const;
    void say(const std::string& problem);

    std::filesystem::path path_; // empty: memory only
    Log* log_ = nullptr;         // null: memory only
    PropertyDictionary values_;
    std::vector<Change> waiting_;
    std::string said_;
};

} // namespace zephyra
