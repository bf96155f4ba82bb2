#include "platform/property_list.h"

#include "platform/atomic_file.h"

#include <array>
#include <fstream>

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
    return Failure{path.string() + " cannot be " + reason};
}

Result<std::vector<std::byte>> readBytes(const fs::path& path, std::size_t most) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) return Failure{"read: there is no such file"};
    if (error) return Failure{"read: " + error.message()};
    // A device or pipe is not even opened: that may wait for ever.
    if (!fs::is_regular_file(status)) return Failure{"read: it is no ordinary file"};
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) return Failure{"read: " + error.message()};
    if (size > most)
        return Failure{"read: it has " + std::to_string(size) + " bytes, of which " +
                       std::to_string(most) + " are read at most"};
    std::vector<std::byte> bytes(size);
    std::ifstream file(path, std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    if (!file) return Failure{"read; it must be a file that you may read"};
    return bytes;
}

} // namespace

Result<PropertyDictionary> readPropertyListFile(const fs::path& path,
                                                const PropertyListLimits& limits) {
    const auto bytes = readBytes(path, limits.bytes);
    if (!bytes) return failure(path, bytes.message());
    auto value = readPropertyList(bytes.value(), limits);
    if (!value) return failure(path, "read: " + value.message());
    if (auto* const dictionary = value.value().as<PropertyDictionary>())
        return std::move(*dictionary);
    return failure(path, std::string("read: at its top is a value of type ") +
                             value.value().typeName() + "; a dictionary is needed");
}

Result<void> writePropertyListFile(const fs::path& path, const PropertyDictionary& dictionary) {
    const auto xml = writePropertyList(dictionary);
    if (!xml) return failure(path, "written: " + xml.message());
    AtomicFile file;
    std::error_code error = file.open(path);
    if (!error) {
        std::ofstream stream(file.path(), std::ios::binary);
        stream << xml.value();
        stream.close();
        if (!stream) return failure(path, "written: the disk is full or failed; make room");
        error = file.commit();
    }
    if (error) return failure(path, "written: " + error.message());
    return {};
}

} // namespace zephyra
