#include "platform/lists/property_reader.h"

#include "platform/text/log.h"

#include <cmath>

namespace zephyra {

PropertyReader::PropertyReader(const PropertyDictionary& dictionary, std::string where)
    : dictionary_(dictionary), where_(std::move(where)) {}

const PropertyValue* PropertyReader::value(std::string_view key) {
    asked_.emplace(key);
    const auto found = dictionary_.find(key);
    return found == dictionary_.end() ? nullptr : &found->second;
}

void PropertyReader::complain(std::string_view key, const PropertyValue& found,
                              const char* wanted) const {
    const std::string path = (where_.empty() ? where_ : where_ + '.') + std::string(key);
    logLine(path + ": a value of type " + found.typeName() + " is ignored; " + wanted +
            " is needed");
}

template <typename Type>
const Type* PropertyReader::find(std::string_view key, const char* wanted) {
    const PropertyValue* const found = value(key);
    if (!found) return nullptr;
    const Type* const typed = found->as<Type>();
    if (!typed) complain(key, *found, wanted);
    return typed;
}

std::optional<double> PropertyReader::real(std::string_view key) {
    const PropertyValue* const found = value(key);
    if (!found) return std::nullopt;
    if (const auto* const whole = found->as<std::int64_t>()) return static_cast<double>(*whole);
    const auto* const real = found->as<double>();
    if (real && std::isfinite(*real)) return *real;
    complain(key, *found, "a finite real");
    return std::nullopt;
}

std::optional<std::int64_t> PropertyReader::whole(std::string_view key) {
    const auto* const found = find<std::int64_t>(key, "a whole number");
    return found ? std::optional(*found) : std::nullopt;
}

std::optional<bool> PropertyReader::boolean(std::string_view key) {
    const PropertyValue* const found = value(key);
    if (!found) return std::nullopt;
    if (const auto* const flag = found->as<bool>()) return *flag;
    const auto* const whole = found->as<std::int64_t>();
    if (whole && (*whole == 0 || *whole == 1)) return *whole == 1;
    complain(key, *found, "a boolean");
    return std::nullopt;
}

std::optional<std::string> PropertyReader::text(std::string_view key) {
    const auto* const found = find<std::string>(key, "a string");
    return found ? std::optional(*found) : std::nullopt;
}

const PropertyData* PropertyReader::data(std::string_view key) {
    return find<PropertyData>(key, "data");
}

const PropertyArray* PropertyReader::array(std::string_view key) {
    return find<PropertyArray>(key, "an array");
}

const PropertyDictionary* PropertyReader::dictionary(std::string_view key) {
    return find<PropertyDictionary>(key, "a dictionary");
}

PropertyDictionary PropertyReader::unknown() const {
    PropertyDictionary unknown;
    for (const auto& entry : dictionary_)
        if (!asked_.contains(entry.first)) unknown.insert(entry);
    return unknown;
}

} // namespace zephyra
