// Reads the binary form: objects that refer to each other by number, a table of where they stand,
// and a trailer that says where the table is.

#include "platform/lists/property_field.h"
#include "platform/lists/property_list_builder.h"
#include "platform/lists/property_list_forms.h"

#include <bit>

namespace zephyra {

namespace {

constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kTrailerBytes = 32;

// The upper half of an object's first byte.
enum Kind : unsigned {
    simple = 0x0,
    whole = 0x1,
    real = 0x2,
    date = 0x3,
    data = 0x4,
    ascii = 0x5,
    utf16 = 0x6,
    array = 0xa,
    dictionary = 0xd
};

constexpr const char* kDamaged = "the binary property list is damaged";

/// Walks the objects from the top. One that is referred to from many places is walked, counted and
/// kept as often; the limits end that, and the depth ends circles. Operations that answer false
/// have noted the failure.
class BinaryReader {
public:
    BinaryReader(std::span<const std::byte> bytes, const PropertyListLimits& limits)
        : bytes_(bytes), mostBytes_(limits.bytes), list_(limits) {}

    Result<PropertyValue> run() {
        if (trailer() && value(top_)) return list_.take();
        return list_.failure();
    }

private:
    /// An object's kind, and where its content stands and how many units it has.
    struct Object {
        unsigned kind;
        unsigned low; ///< the lower half of the first byte
        std::uint64_t at;
        std::uint64_t count;
    };

    bool fail(const std::string& reason) { return list_.fail(reason); }
    std::uint64_t number(std::uint64_t at, std::size_t size) const;
    bool trailer();
    bool object(std::uint64_t index, Object& found);
    bool longCount(Object& found);
    bool fits(const Object& found, std::uint64_t unitBytes);
    bool text(const Object& found, std::string& utf8);
    bool utf16Text(const Object& found, std::string& utf8);
    bool value(std::uint64_t index);
    bool container(const Object& found);
    bool content(const Object& found);
    bool field(const Object& found);
    bool key(std::uint64_t index);
    template <typename Value>
    bool add(Result<Value> value);

    std::span<const std::byte> bytes_;
    std::size_t mostBytes_;
    PropertyListBuilder list_;
    std::size_t offsetBytes_ = 0;
    std::size_t referenceBytes_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t top_ = 0;
    std::uint64_t tableAt_ = 0; ///< where the objects' places stand, and where the objects end
    std::uint64_t expandedBytes_ = 0;
};

/// The big-endian number of size bytes; the caller has made sure that they are there.
std::uint64_t BinaryReader::number(std::uint64_t at, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | std::to_integer<std::uint64_t>(bytes_[at + i]);
    return value;
}

bool BinaryReader::trailer() {
    if (bytes_.size() < kHeaderBytes + kTrailerBytes) return fail(kDamaged);
    const std::uint64_t end = bytes_.size() - kTrailerBytes;
    offsetBytes_ = number(end + 6, 1);
    referenceBytes_ = number(end + 7, 1);
    objects_ = number(end + 8, 8);
    top_ = number(end + 16, 8);
    tableAt_ = number(end + 24, 8);
    const auto isSize = [](std::size_t bytes) { return bytes >= 1 && bytes <= 8; };
    const bool isSound = isSize(offsetBytes_) && isSize(referenceBytes_) &&
                         tableAt_ >= kHeaderBytes && tableAt_ <= end &&
                         objects_ <= (end - tableAt_) / offsetBytes_;
    return isSound || fail(kDamaged);
}

bool BinaryReader::object(std::uint64_t index, Object& found) {
    if (index >= objects_) return fail(kDamaged);
    found.at = number(tableAt_ + index * offsetBytes_, offsetBytes_);
    if (found.at < kHeaderBytes || found.at >= tableAt_) return fail(kDamaged);
    const auto first = static_cast<unsigned>(number(found.at++, 1));
    found.kind = first >> 4;
    found.low = first & 0xf;
    found.count = found.low;
    return found.kind < data || found.low < 0xf || longCount(found);
}

/// Takes a count of 15 or more, which stands as a whole number before the content.
bool BinaryReader::longCount(Object& found) {
    if (found.at >= tableAt_) return fail(kDamaged);
    const auto first = static_cast<unsigned>(number(found.at++, 1));
    const std::size_t size = std::size_t{1} << (first & 0xf);
    if (first >> 4 != whole || size > 8 || size > tableAt_ - found.at) return fail(kDamaged);
    found.count = number(found.at, size);
    found.at += size;
    return true;
}

bool BinaryReader::fits(const Object& found, std::uint64_t unitBytes) {
    if (found.count > (tableAt_ - found.at) / unitBytes) return fail(kDamaged);
    expandedBytes_ += found.count * unitBytes;
    return expandedBytes_ <= mostBytes_ ||
           fail("the binary property list repeats itself to more than " +
                std::to_string(mostBytes_) + " bytes; use a smaller one");
}

bool BinaryReader::text(const Object& found, std::string& utf8) {
    if (found.kind == utf16) return utf16Text(found, utf8);
    if (!fits(found, 1)) return false;
    const std::span content = bytes_.subspan(found.at, found.count);
    utf8.assign(reinterpret_cast<const char*>(content.data()), content.size());
    const auto checked = property_field::checkText(utf8);
    return checked.ok() || fail(checked.message());
}

bool BinaryReader::utf16Text(const Object& found, std::string& utf8) {
    if (!fits(found, 2)) return false;
    for (std::uint64_t i = 0; i < found.count; ++i) {
        auto character = static_cast<char32_t>(number(found.at + 2 * i, 2));
        if (character >= 0xd800 && character < 0xdc00 && i + 1 < found.count) {
            const auto low = static_cast<char32_t>(number(found.at + 2 * ++i, 2));
            if (low < 0xdc00 || low >= 0xe000) return fail("text that is no UTF-16 cannot be kept");
            character = 0x10000 + ((character - 0xd800) << 10) + (low - 0xdc00);
        }
        if (!property_field::isTextCharacter(character))
            return fail("text with control characters or half a UTF-16 pair cannot be kept; only "
                        "tab, line feed and carriage return can");
        property_field::appendUtf8(character, utf8);
    }
    return true;
}

bool BinaryReader::key(std::uint64_t index) {
    Object found{};
    std::string utf8;
    if (!object(index, found)) return false;
    if (found.kind != ascii && found.kind != utf16)
        return fail("a key is no string; strings are needed");
    if (!text(found, utf8)) return false;
    const bool isNew = !list_.dictionary()->contains(utf8);
    list_.enterKey(std::move(utf8));
    return isNew || fail("the key stands there twice; every key must stand in its dictionary once");
}

bool BinaryReader::value(std::uint64_t index) {
    Object found{};
    if (!list_.beginValue() || !object(index, found)) return false;
    const bool isContainer = found.kind == array || found.kind == dictionary;
    return isContainer ? container(found) : content(found);
}

bool BinaryReader::container(const Object& found) {
    const bool isDictionary = found.kind == dictionary;
    if (!list_.open(isDictionary ? PropertyValue(PropertyDictionary())
                                 : PropertyValue(PropertyArray())))
        return false;
    if (!fits(found, referenceBytes_ * (isDictionary ? 2 : 1))) return false;
    const auto reference = [&](std::uint64_t i) {
        return number(found.at + i * referenceBytes_, referenceBytes_);
    };
    for (std::uint64_t i = 0; i < found.count; ++i) {
        if (isDictionary && !key(reference(i))) return false;
        if (!value(reference(isDictionary ? found.count + i : i))) return false;
    }
    list_.close();
    return true;
}

bool BinaryReader::content(const Object& found) {
    if (found.kind == ascii || found.kind == utf16) {
        std::string utf8;
        if (!text(found, utf8)) return false;
        list_.add(std::move(utf8));
        return true;
    }
    if (found.kind != data) return field(found);
    if (!fits(found, 1)) return false;
    list_.add(PropertyData(bytes_.subspan(found.at, found.count)));
    return true;
}

/// What is of fixed size: booleans, numbers, dates.
bool BinaryReader::field(const Object& found) {
    if (found.kind == simple && (found.low == 0x8 || found.low == 0x9))
        return add(Result<bool>(found.low == 0x9));
    if (found.kind != whole && found.kind != Kind::real && found.kind != date)
        return fail("a value of an unknown type cannot be read; use strings, numbers, booleans, "
                    "dates, data, arrays and dictionaries");
    const std::size_t size = std::size_t{1} << found.low;
    const bool isKnown =
        size <= 8 && (found.kind == whole || size == 8 || (found.kind == Kind::real && size == 4));
    if (!isKnown)
        return fail("a number of " + std::to_string(size) + " bytes cannot be read; use 64 bits");
    if (size > tableAt_ - found.at) return fail(kDamaged);
    const std::uint64_t bits = number(found.at, size);
    if (found.kind == whole) return add(Result(static_cast<std::int64_t>(bits)));
    const double real = size == 4 ? double{std::bit_cast<float>(static_cast<std::uint32_t>(bits))}
                                  : std::bit_cast<double>(bits);
    return found.kind == date ? add(property_field::wholeSeconds(real))
                              : add(property_field::finiteReal(real));
}

template <typename Value>
bool BinaryReader::add(Result<Value> value) {
    if (!value) return fail(value.message());
    list_.add(std::move(value.value()));
    return true;
}

} // namespace

Result<PropertyValue> readBinaryPropertyList(std::span<const std::byte> bytes,
                                             const PropertyListLimits& limits) {
    return BinaryReader(bytes, limits).run();
}

} // namespace zephyra
