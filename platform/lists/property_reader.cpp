#include "platform/lists/property_reader.h"

#include <cmath>
#include <utility>

namespace zephyra {

PropertyReader::PropertyReader(const PropertyDictionary& dictionary)
    : PropertyReader(dictionary, own_) {}

PropertyReader::PropertyReader(const PropertyDictionary& dictionary, StateFindings& findings,
                               std::string where, StandIn standIn)
    : dictionary_(dictionary), findings_(findings), where_(std::move(where)), standIn_(standIn) {}

const PropertyValue* PropertyReader::value(std::string_view key) {
    asked_.emplace(key);
    const auto found = dictionary_.find(key);
    return found == dictionary_.end() ? nullptr : &found->second;
}

std::string PropertyReader::path(std::string_view key) const {
    return (where_.empty() ? where_ : where_ + '.') + std::string(key);
}

void PropertyReader::complain(std::string_view key, std::string text, StandIn standIn) {
    findings_.push_back({path(key), std::move(text), standIn});
}

void PropertyReader::refuse(std::string_view key, const PropertyValue& found, const char* wanted) {
    complain(key,
             std::string("a value of type ") + found.typeName() + " is ignored; " + wanted +
                 " is needed",
             standIn_);
}

template <typename Type>
const Type* PropertyReader::find(std::string_view key, const char* wanted) {
    const PropertyValue* const found = value(key);
    if (!found) return nullptr;
    const Type* const typed = found->as<Type>();
    if (!typed) refuse(key, *found, wanted);
    return typed;
}

std::optional<double> PropertyReader::real(std::string_view key) {
    const PropertyValue* const found = value(key);
    if (!found) return std::nullopt;
    if (const auto* const whole = found->as<std::int64_t>()) return static_cast<double>(*whole);
    const auto* const real = found->as<double>();
    if (real && std::isfinite(*real)) return *real;
    refuse(key, *found, "a finite real");
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
    refuse(key, *found, "a boolean");
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
