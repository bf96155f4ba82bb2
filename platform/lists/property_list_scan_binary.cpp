#include "platform/lists/property_field.h"
#include "platform/lists/property_list_scan.h"
#include "platform/lists/property_path.h"

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

/// Walks the objects from the top. One that is referred to from many places is walked and counted
/// as often as the parser will copy it; the limits end that, and the depth ends circles. Operations
/// that answer false have noted the failure.
class BinaryScan {
public:
    BinaryScan(std::span<const std::byte> bytes, const PropertyListLimits& limits)
        : bytes_(bytes), limits_(limits) {}

    Result<PropertyListScan> run() {
        if (trailer() && value(top_, 0)) return std::move(scan_);
        return failure_;
    }

private:
    /// An object's kind, and where its content stands and how many units it has.
    struct Object {
        unsigned kind;
        unsigned low; ///< the lower half of the first byte
        std::uint64_t at;
        std::uint64_t count;
    };

    bool fail(const std::string& reason);
    std::uint64_t number(std::uint64_t at, std::size_t size) const;
    bool trailer();
    bool object(std::uint64_t index, Object& found);
    bool longCount(Object& found);
    bool fits(const Object& found, std::uint64_t unitBytes);
    bool text(const Object& found, std::string& utf8);
    bool utf16Text(const Object& found, std::string& utf8);
    bool value(std::uint64_t index, std::size_t depth);
    bool container(const Object& found, std::size_t depth);
    bool field(const Object& found);
    bool key(std::uint64_t index);
    template <typename Value>
    bool keep(const Result<Value>& number);

    std::span<const std::byte> bytes_;
    PropertyListLimits limits_;
    PropertyListScan scan_;
    PropertyPath path_;
    std::size_t offsetBytes_ = 0;
    std::size_t referenceBytes_ = 0;
    std::uint64_t objects_ = 0;
    std::uint64_t top_ = 0;
    std::uint64_t tableAt_ = 0; ///< where the objects' places stand, and where the objects end
    std::uint64_t expandedBytes_ = 0;
    Failure failure_;
};

bool BinaryScan::fail(const std::string& reason) {
    failure_ = path_.failure(reason);
    return false;
}

/// The big-endian number of size bytes; the caller has made sure that they are there.
std::uint64_t BinaryScan::number(std::uint64_t at, std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value = value << 8 | std::to_integer<std::uint64_t>(bytes_[at + i]);
    return value;
}

bool BinaryScan::trailer() {
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

bool BinaryScan::object(std::uint64_t index, Object& found) {
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
bool BinaryScan::longCount(Object& found) {
    if (found.at >= tableAt_) return fail(kDamaged);
    const auto first = static_cast<unsigned>(number(found.at++, 1));
    const std::size_t size = std::size_t{1} << (first & 0xf);
    if (first >> 4 != whole || size > 8 || size > tableAt_ - found.at) return fail(kDamaged);
    found.count = number(found.at, size);
    found.at += size;
    return true;
}

bool BinaryScan::fits(const Object& found, std::uint64_t unitBytes) {
    if (found.count > (tableAt_ - found.at) / unitBytes) return fail(kDamaged);
    expandedBytes_ += found.count * unitBytes;
    return expandedBytes_ <= limits_.bytes ||
           fail("the binary property list repeats itself to more than " +
                std::to_string(limits_.bytes) + " bytes; use a smaller one");
}

bool BinaryScan::text(const Object& found, std::string& utf8) {
    if (found.kind == utf16) return utf16Text(found, utf8);
    if (!fits(found, 1)) return false;
    for (std::uint64_t i = 0; i < found.count; ++i) utf8 += static_cast<char>(bytes_[found.at + i]);
    const auto checked = property_field::checkText(utf8);
    return checked.ok() || fail(checked.message());
}

bool BinaryScan::utf16Text(const Object& found, std::string& utf8) {
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

bool BinaryScan::key(std::uint64_t index) {
    Object found{};
    std::string utf8;
    if (!object(index, found)) return false;
    if (found.kind != ascii && found.kind != utf16)
        return fail("a key is no string; strings are needed");
    if (!text(found, utf8)) return false;
    path_.enterKey(utf8);
    return true;
}

bool BinaryScan::value(std::uint64_t index, std::size_t depth) {
    if (const auto count = checkCount(++scan_.values, limits_); !count) {
        failure_ = Failure{count.message()};
        return false;
    }
    Object found{};
    if (!object(index, found)) return false;
    std::string utf8;
    switch (found.kind) {
    case array:
    case dictionary:
        return container(found, depth + 1);
    case ascii:
    case utf16:
        return text(found, utf8);
    case data:
        return fits(found, 1);
    default:
        return field(found);
    }
}

bool BinaryScan::container(const Object& found, std::size_t depth) {
    if (const auto nesting = checkNesting(depth, limits_); !nesting) return fail(nesting.message());
    const bool isDictionary = found.kind == dictionary;
    if (!fits(found, referenceBytes_ * (isDictionary ? 2 : 1))) return false;
    const auto reference = [&](std::uint64_t i) {
        return number(found.at + i * referenceBytes_, referenceBytes_);
    };
    for (std::uint64_t i = 0; i < found.count; ++i) {
        if (!isDictionary)
            path_.enterIndex(i);
        else if (!key(reference(i)))
            return false;
        if (!value(reference(isDictionary ? found.count + i : i), depth)) return false;
        path_.leave();
    }
    return true;
}

/// What is of fixed size: booleans, numbers, dates.
bool BinaryScan::field(const Object& found) {
    if (found.kind == simple && (found.low == 0x8 || found.low == 0x9)) return true;
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
    if (found.kind == whole) {
        scan_.numbers.emplace_back(static_cast<std::int64_t>(bits));
        return true;
    }
    const double real = size == 4 ? double{std::bit_cast<float>(static_cast<std::uint32_t>(bits))}
                                  : std::bit_cast<double>(bits);
    return found.kind == date ? keep(property_field::wholeSeconds(real))
                              : keep(property_field::finiteReal(real));
}

template <typename Value>
bool BinaryScan::keep(const Result<Value>& number) {
    if (!number) return fail(number.message());
    scan_.numbers.emplace_back(number.value());
    return true;
}

} // namespace

Result<PropertyListScan> scanBinaryPropertyList(std::span<const std::byte> bytes,
                                                const PropertyListLimits& limits) {
    return BinaryScan(bytes, limits).run();
}

} // namespace zephyra
