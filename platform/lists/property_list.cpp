#include "platform/lists/property_list.h"

#include "platform/files/whole_file.h"
#include "platform/text/odd_bytes.h"

#include <array>

namespace zephyra {

namespace fs = std::filesystem;

PropertyValue::PropertyValue(const PropertyValue& other) = default;
PropertyValue::PropertyValue(PropertyValue&& other) noexcept = default;
PropertyValue& PropertyValue::operator=(const PropertyValue& other) = default;
PropertyValue& PropertyValue::operator=(PropertyValue&& other) noexcept = default;
PropertyValue::~PropertyValue() = default;

const char* PropertyValue::typeName() const noexcept {
    static constexpr std::array names = {"string", "whole number", "real",  "boolean",
                                         "date",   "data",         "array", "dictionary"};
    static_assert(names.size() == std::variant_size_v<Variant>);
    return names[value_.index()];
}

namespace {

Failure failure(const fs::path& path, const std::string& reason) {
    return Failure{shownFile(path) + " cannot be " + reason};
}

} // namespace

Result<PropertyDictionary> readPropertyListFile(const fs::path& path,
                                                const PropertyListLimits& limits,
                                                const StreamedFiles& streams) {
    const auto file = readWholeFile(path, limits.bytes, streams);
    if (!file) return Failure{file.message()};
    auto value = readPropertyList(file.value().bytes, limits);
    const fs::path name = inputTitle(path);
    if (!value) return failure(name, "read: " + value.message());
    if (auto* const dictionary = value.value().as<PropertyDictionary>())
        return std::move(*dictionary);
    return failure(name, std::string("read: at its top is a value of type ") +
                             value.value().typeName() + "; a dictionary is needed");
}

Result<void> writePropertyListFile(const fs::path& path, const PropertyDictionary& dictionary) {
    const auto xml = writePropertyList(dictionary);
    if (!xml) return failure(path, "written: " + xml.message());
    return replaceFile(path, std::as_bytes(std::span(xml.value())));
}

} // namespace zephyra
