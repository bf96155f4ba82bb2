// Reads property lists: scanned first, then parsed by libplist, then taken over value by value.

#include "platform/lists/property_list_scan.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <new>
#include <plist/plist.h>

namespace zephyra {

namespace {

struct Freer {
    void operator()(void* memory) const noexcept { std::free(memory); }
};
struct TreeFreer {
    void operator()(void* tree) const noexcept { plist_free(tree); }
};
using Tree = std::unique_ptr<void, TreeFreer>;

/// Takes libplist's tree over, with the numbers from the scan. Its depth and size are bounded by
/// the scan's limits.
class TakeOver {
public:
    explicit TakeOver(const PropertyListScan& scan) : scan_(scan) {}

    /// Nothing when the tree is not what was scanned.
    std::optional<PropertyValue> run(plist_t top) {
        PropertyValue value = take(top);
        const bool isWhole = values_ == scan_.values && numbers_ == scan_.numbers.size();
        if (isKnown_ && isWhole) return value;
        return std::nullopt;
    }

private:
    PropertyValue take(plist_t node);
    PropertyValue takeArray(plist_t node);
    PropertyValue takeDictionary(plist_t node);
    PropertyValue takeNumber();

    const PropertyListScan& scan_;
    std::size_t values_ = 0;
    std::size_t numbers_ = 0;
    bool isKnown_ = true;
};

PropertyValue TakeOver::take(plist_t node) {
    ++values_;
    std::uint64_t length = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_STRING: {
        const char* const text = plist_get_string_ptr(node, &length);
        return text ? std::string(text, length) : std::string();
    }
    case PLIST_BOOLEAN: {
        std::uint8_t flag = 0;
        plist_get_bool_val(node, &flag);
        return flag != 0;
    }
    case PLIST_DATA: {
        const auto* const bytes =
            reinterpret_cast<const std::byte*>(plist_get_data_ptr(node, &length));
        return bytes ? PropertyData(bytes, bytes + length) : PropertyData();
    }
    case PLIST_UINT:
    case PLIST_REAL:
    case PLIST_DATE:
        return takeNumber();
    case PLIST_ARRAY:
        return takeArray(node);
    case PLIST_DICT:
        return takeDictionary(node);
    default:
        isKnown_ = false;
        return {};
    }
}

PropertyValue TakeOver::takeNumber() {
    if (numbers_ < scan_.numbers.size()) return scan_.numbers[numbers_++];
    isKnown_ = false;
    return {};
}

PropertyValue TakeOver::takeArray(plist_t node) {
    PropertyArray array;
    array.reserve(plist_array_get_size(node));
    plist_array_iter step = nullptr;
    plist_array_new_iter(node, &step);
    const std::unique_ptr<void, Freer> freeStep(step);
    for (plist_t item = nullptr;; item = nullptr) {
        plist_array_next_item(node, step, &item);
        if (!item) return array;
        array.push_back(take(item));
    }
}

PropertyValue TakeOver::takeDictionary(plist_t node) {
    PropertyDictionary dictionary;
    plist_dict_iter step = nullptr;
    plist_dict_new_iter(node, &step);
    const std::unique_ptr<void, Freer> freeStep(step);
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, step, &key, &item);
        const std::unique_ptr<char, Freer> freeKey(key);
        if (!item || !key) return dictionary;
        dictionary.insert_or_assign(key, take(item));
    }
}

bool isBinary(std::span<const std::byte> bytes) {
    constexpr std::string_view magic = "bplist00";
    return bytes.size() >= magic.size() &&
           std::equal(magic.begin(), magic.end(), bytes.begin(),
                      [](char wanted, std::byte found) { return std::byte(wanted) == found; });
}

/// The text with every line end as XML understands it: a line feed.
std::string withLineFeeds(std::span<const std::byte> bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char byte = static_cast<char>(bytes[i]);
        const bool isPair = byte == '\n' && i > 0 && bytes[i - 1] == std::byte{'\r'};
        if (!isPair) text += byte == '\r' ? '\n' : byte;
    }
    return text;
}

Result<PropertyValue> takeOver(plist_t parsed, const PropertyListScan& scan) {
    const Tree tree(parsed);
    auto value = tree ? TakeOver(scan).run(tree.get()) : std::nullopt;
    if (value) return std::move(*value);
    return Failure{"the property list cannot be read: it is damaged, or has a key twice in one "
                   "dictionary; every key must stand there once"};
}

} // namespace

Result<PropertyValue> readPropertyList(std::span<const std::byte> bytes,
                                       const PropertyListLimits& limits) try {
    const std::size_t most =
        std::min<std::size_t>(limits.bytes, std::numeric_limits<std::uint32_t>::max());
    if (bytes.size() > most)
        return Failure{"a property list of " + std::to_string(bytes.size()) +
                       " bytes is too large; " + std::to_string(most) + " are read at most"};
    plist_t parsed = nullptr;
    if (isBinary(bytes)) {
        const auto scan = scanBinaryPropertyList(bytes, limits);
        if (!scan) return Failure{scan.message()};
        plist_from_bin(reinterpret_cast<const char*>(bytes.data()),
                       static_cast<std::uint32_t>(bytes.size()), &parsed);
        return takeOver(parsed, scan.value());
    }
    const std::string text = withLineFeeds(bytes);
    const auto scan = scanXmlPropertyList(text, limits);
    if (!scan) return Failure{scan.message()};
    plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &parsed);
    return takeOver(parsed, scan.value());
} catch (const std::bad_alloc&) {
    return Failure{"the property list needs more memory than there is; use a smaller one"};
}

} // namespace zephyra
