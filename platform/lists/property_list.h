// PropertyValue: a tree of plain values, as property-list files hold it.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/lists/property_data.h"
#include "platform/text/result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zephyra {

class PropertyValue;
using PropertyArray = std::vector<PropertyValue>;
using PropertyDictionary = std::map<std::string, PropertyValue, std::less<>>; // UTF-8 keys

/// Seconds since 2001-01-01 00:00:00 UTC; files keep whole seconds.
struct PropertyDate {
    double seconds = 0.0;
    bool operator==(const PropertyDate&) const = default;
};

/// One value: a string (UTF-8), whole number, real, boolean, date, data, array or dictionary. Plain
/// data; any thread, one at a time.
class PropertyValue {
public:
    using Variant = std::variant<std::string, std::int64_t, double, bool, PropertyDate,
                                 PropertyData, PropertyArray, PropertyDictionary>;

    PropertyValue() = default; ///< an empty string
    PropertyValue(std::string text) : value_(std::move(text)) {}
    PropertyValue(std::string_view text) : value_(std::string(text)) {}
    PropertyValue(const char* text) : value_(std::string(text)) {}
    PropertyValue(std::int64_t number) : value_(number) {}
    PropertyValue(int number) : value_(std::int64_t{number}) {}
    PropertyValue(double real) : value_(real) {}
    PropertyValue(float real) : value_(double{real}) {}
    PropertyValue(bool flag) : value_(flag) {}
    PropertyValue(PropertyDate date) : value_(date) {}
    PropertyValue(PropertyData data) : value_(std::move(data)) {}
    PropertyValue(PropertyArray array) : value_(std::move(array)) {}
    PropertyValue(PropertyDictionary dictionary) : value_(std::move(dictionary)) {}
    // Out of line, which keeps the tree's code in one place.
    PropertyValue(const PropertyValue& other);
    PropertyValue(PropertyValue&& other) noexcept;
    PropertyValue& operator=(const PropertyValue& other);
    PropertyValue& operator=(PropertyValue&& other) noexcept;
    ~PropertyValue();

    /// The value when it is of that type, else null.
    template <typename Type>
    const Type* as() const noexcept {
        return std::get_if<Type>(&value_);
    }
    template <typename Type>
    Type* as() noexcept {
        return std::get_if<Type>(&value_);
    }
    const Variant& variant() const noexcept { return value_; }

    /// "string", "whole number", "real", "boolean", "date", "data", "array", "dictionary".
    const char* typeName() const noexcept;

    bool operator==(const PropertyValue&) const = default;

private:
    Variant value_;
};

/// What is refused before it is kept, so that no file can exhaust memory or the stack.
struct PropertyListLimits {
    std::size_t bytes = std::size_t{64} << 20;
    int depth = 64;                            ///< of nested arrays and dictionaries; 64 at most
    std::size_t values = std::size_t{1} << 20; ///< without the keys
};

/// Reads an XML or binary property list. Fails with one line, naming the key's path where there is
/// one and the line of XML, for what is too large, too deep, damaged, of neither form, declares
/// entities, or holds a value that is none of the above. Any thread but RENDER.
Result<PropertyValue> readPropertyList(std::span<const std::byte> bytes,
                                       const PropertyListLimits& limits = {});

/// The same of a file, or of what streams took by that name, whose top must be a dictionary.
Result<PropertyDictionary> readPropertyListFile(const std::filesystem::path& path,
                                                const PropertyListLimits& limits = {},
                                                const StreamedFiles& streams = {});

/// The XML form; reals come back exactly. Fails, naming the key's path, for what it cannot hold:
/// reals that are not finite, text that is not UTF-8 or holds characters that XML cannot (control
/// characters other than tab, line feed and carriage return), dates outside years 1 to 9999, and
/// for what a reader with these limits of depth and values refuses. Any thread but RENDER.
Result<std::string> writePropertyList(const PropertyValue& value,
                                      const PropertyListLimits& limits = {});

/// Replaces the file at path by the XML form, completely or not at all. Any thread but RENDER.
Result<void> writePropertyListFile(const std::filesystem::path& path,
                                   const PropertyDictionary& dictionary);

} // namespace zephyra
