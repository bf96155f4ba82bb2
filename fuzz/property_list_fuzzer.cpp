// Reads arbitrary bytes as a property list. Whatever comes, reading ends, within bounded memory,
// with one line of text or with a value that is written and read back equal.

#include "fuzz/require.h"
#include "platform/lists/property_list.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zephyra;
    PropertyListLimits limits;
    limits.values = 20000; // a few bytes can stand for a million values, which take their time
    limits.bytes = std::size_t{1} << 20;
    const auto value = readPropertyList(std::as_bytes(std::span(data, size)), limits);
    if (!value) {
        require(isOneLine(value.message()));
        return 0;
    }
    const auto xml = writePropertyList(value.value());
    require(xml.ok());
    const auto again = readPropertyList(std::as_bytes(std::span(xml.value())));
    require(again.ok() && again.value() == value.value());
    return 0;
}
