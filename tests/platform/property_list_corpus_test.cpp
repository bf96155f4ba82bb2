// Every file of fuzz/corpus/property_list, whose names say what is in them, reads as its row says.
// The files were made by hand or found by the fuzzer.

#include "platform/files/folder_entries.h"
#include "platform/lists/property_list.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

const fs::path kFolder = fs::path(ZEPHYRA_SOURCE_DIR) / "fuzz/corpus/property_list";

Result<PropertyValue> read(const std::string& text) {
    return readPropertyList(std::as_bytes(std::span(text)));
}

/// 64 arrays, each the only item of the next.
PropertyValue nested() {
    PropertyValue value = PropertyArray();
    for (int i = 1; i < 64; ++i) value = PropertyArray{value};
    return value;
}

const PropertyValue kEveryType = PropertyDictionary{
    {"array", PropertyArray{1, PropertyArray{true, false}, PropertyDictionary()}},
    {"data", PropertyData{std::byte{0}, std::byte{1}, std::byte{2}, std::byte{255}}},
    {"date", PropertyDate{730943998}},
    {"real", 0.1},
    {"text", "a <b> & \xc3\xa9\xf0\x9f\x98\x80\ttab"},
    {"whole", -5}};

const std::map<std::string, PropertyValue> kReadable = {
    {"every-type.xml", kEveryType},
    {"every-type.binary", kEveryType},
    {"float-and-shared.binary", PropertyArray{0.1f, 0.1f, 255}},
    {"comments-and-cdata.xml", PropertyArray{"a<&AB"}},
    {"carriage-returns.xml", "a\nb\nc\r"},
    {"64-deep.xml", nested()}};

/// Files that are refused for one reason, which the line of failure begins with.
const std::map<std::string, std::vector<const char*>> kRefused = {
    {"neither an XML nor a binary property list; one is needed", {"empty.xml", "text.xml"}},
    {"[0][0][0][0][0]", {"65-deep.xml", "circle.binary"}},
    {"a property list of more than 1048576 values is too large", {"doubled-40-times.binary"}},
    {"the XML declares entities", {"entities.xml"}},
    {"the XML is in an encoding that is not read here; UTF-8", {"latin-1.xml"}},
    {"a: in line 2 text that is not UTF-8 cannot be kept", {"not-utf-8.xml"}},
    {"the XML is damaged in line 14", {"cut.xml"}},
    {"a: the XML is damaged in line 2: the key stands there twice", {"key-twice.xml"}},
    {"a: the XML is damaged in line 2: a key has no value", {"key-without-value.xml"}},
    {"a: in line 2 the data cannot be read; it must be base64", {"bad-data.xml"}},
    {"a: in line 2 the date \"2023-02-29T00:00:00Z\" cannot be read", {"bad-date.xml"}},
    {"Pad[0]: in line 2 the real \"abc\" cannot be read; use a decimal number", {"bad-real.xml"}},
    {"a: in line 2 the whole number \"0x10\" cannot be read", {"bad-whole.xml"}},
    {"a: in line 2 a real that is not finite cannot be kept; use a number", {"infinite.xml"}},
    {"[0]: a real that is not finite cannot be kept", {"not-a-number.binary"}},
    {"a: the XML is damaged in line 2: a & that begins no known", {"control-character.xml"}},
    {"k: text with control characters cannot be kept", {"zero-in-text.binary"}},
    {"text with control characters or half a UTF-16 pair", {"half-a-pair.binary"}},
    {"a key is no string", {"key-no-string.binary"}},
    {"a: the key stands there twice", {"key-twice.binary"}},
    {"k: a value of an unknown type", {"identifier.binary"}},
    {"[0]: a number of 16 bytes", {"whole-of-65-bits.binary"}},
    {"a date outside the years 1 to 9999 cannot be kept", {"date-beyond.binary"}},
    {"[0]: the binary property list is damaged", {"reference-beyond.binary"}},
    {"the binary property list is damaged",
     {"cut.binary", "claims-too-many.binary", "array-beyond-the-end.binary",
      "string-beyond-the-end.binary"}}};

TEST(PropertyListCorpus, readsAsItWasMadeAndWritesWhatReadsAlike) {
    for (const auto& [name, expected] : kReadable) {
        const auto value = must(read(readText(kFolder / name)));
        EXPECT_EQ(value, expected) << name;
        EXPECT_EQ(must(read(must(writePropertyList(value)))), expected) << name;
    }
}

TEST(PropertyListCorpus, refusesTheRestWithOneLine) {
    for (const auto& [reason, names] : kRefused)
        for (const char* name : names) {
            EXPECT_THAT(failureOf(read(readText(kFolder / name))),
                        AllOf(StartsWith(reason), Not(HasSubstr("\n"))))
                << name;
        }
}

TEST(PropertyListCorpus, hasARowForEveryFile) {
    std::set<std::string> rows;
    for (const auto& row : kReadable) rows.insert(row.first);
    for (const auto& row : kRefused) rows.insert(row.second.begin(), row.second.end());
    EXPECT_THAT(folderEntries(kFolder), ElementsAreArray(rows));
}

} // namespace
} // namespace zephyra
