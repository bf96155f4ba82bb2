#include "platform/lists/property_list.h"

#include "tests/support/temporary_folder.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <random>

namespace zephyra {
namespace {

using testing::HasSubstr;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Result<PropertyValue> read(const std::string& text, const PropertyListLimits& limits = {}) {
    return readPropertyList(std::as_bytes(std::span(text)), limits);
}

/// body as a document reads it.
Result<PropertyValue> readBody(const std::string& body) {
    return read("<plist version=\"1.0\">" + body + "</plist>");
}

/// What comes back of a value; the value of its failure's text when one fails.
PropertyValue roundTrip(const PropertyValue& value) {
    const auto xml = writePropertyList(value);
    if (!xml) return xml.message();
    const auto again = read(xml.value());
    return again ? again.value() : again.message();
}

TEST(PropertyList, RealsComeBackBitForBit) {
    std::vector<double> reals = {0.0,     -0.0,     0.1,     1.0 / 3.0,  1e22, -1e300,
                                 5e-324,  2.2e-308, DBL_MAX, DBL_MIN,    0.1f, 1e-45f,
                                 FLT_MAX, FLT_MIN,  1e16,    123456789.0};
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) reals.push_back(std::bit_cast<double>(random()));
    for (const double real : reals) {
        if (!std::isfinite(real)) continue;
        const PropertyValue value = roundTrip(real);
        ASSERT_NE(value.as<double>(), nullptr) << real;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*value.as<double>()),
                  std::bit_cast<std::uint64_t>(real));
    }
}

TEST(PropertyList, DatesStandInWholeSecondsOverAllYears) {
    const struct {
        double seconds;
        const char* text;
    } cases[] = {{0, "2001-01-01T00:00:00Z"},
                 {0.9, "2001-01-01T00:00:00Z"},
                 {-0.1, "2000-12-31T23:59:59Z"},
                 {730902615, "2024-02-29T12:30:15Z"},
                 {-3182198400, "1900-03-01T00:00:00Z"},
                 {2147483648, "2069-01-19T03:14:08Z"},
                 {-63113904000, "0001-01-01T00:00:00Z"},
                 {252423993599, "9999-12-31T23:59:59Z"}};
    for (const auto& [seconds, text] : cases) {
        const auto xml = writePropertyList(PropertyDate{seconds});
        ASSERT_TRUE(xml.ok()) << xml.message();
        EXPECT_THAT(xml.value(), HasSubstr("<date>" + std::string(text) + "</date>"));
        EXPECT_EQ(roundTrip(PropertyDate{seconds}),
                  PropertyValue(PropertyDate{std::floor(seconds)}));
    }
}

TEST(PropertyList, DataOfEveryLengthComesBack) {
    PropertyData data;
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(roundTrip(data), PropertyValue(data)) << i;
        data.push_back(std::byte(i * 73));
    }
    const PropertyData foob = {std::byte{'f'}, std::byte{'o'}, std::byte{'o'}, std::byte{'b'}};
    EXPECT_THAT(writePropertyList(foob).value(), HasSubstr("<data>Zm9vYg==</data>"));
}

TEST(PropertyList, TextWithEveryMarkAndManyKeysComeBack) {
    PropertyDictionary many{{"", "empty"}, {"<&>\r\n", "]]>\"'\r\n\t\x7f \xef\xbf\xbd "}};
    for (int i = 0; i < 1200; ++i) many[std::to_string(i * 7919)] = i; // the parser hashes many
    EXPECT_EQ(roundTrip(many), PropertyValue(many));
}

TEST(PropertyList, WholeNumbersReachTheEndsOf64Bits) {
    for (const std::int64_t number : {INT64_MIN, std::int64_t{-1}, INT64_MAX})
        EXPECT_EQ(roundTrip(number), PropertyValue(number));
    EXPECT_EQ(readBody("<integer> +010 </integer>").value(), PropertyValue(10));
}

TEST(PropertyList, RefusesToWriteWhatItCannotHoldAndNamesTheKey) {
    PropertyValue deep = PropertyArray();
    for (int i = 0; i < 64; ++i) deep = PropertyArray{deep};
    const struct {
        PropertyValue value;
        std::string message;
    } cases[] = {
        {PropertyDictionary{{"Pad", PropertyArray{1, PropertyDictionary{{"x", kInfinity}}}}},
         "Pad[1].x: a real that is not finite cannot be kept; use a number"},
        {PropertyArray{std::nan("")}, "[0]: a real that is not finite"},
        {PropertyDictionary{{"a\n", "\x01"}}, "a?: text with control characters"},
        {PropertyDictionary{{"\x01", 1}}, "?: text with control characters"},
        {std::string("a\0", 2), "text with control characters"},
        {"\xed\xa0\x80", "text that is not UTF-8"},
        {"\xe0\x80\x80", "text that is not UTF-8"},
        {"\xe2\x82", "text that is not UTF-8"},
        {"\xef\xbf\xbf", "text with control characters"},
        {PropertyDate{252423993600}, "a date outside the years 1 to 9999"},
        {PropertyDate{-63113904000.5}, "a date outside the years 1 to 9999"},
        {PropertyDate{std::nan("")}, "a date outside the years 1 to 9999"},
        {deep, "nested more than 64 deep"},
        {PropertyDictionary{{std::string(500, 'k'), kInfinity}}, "kkk...: a real"}};
    for (const auto& [value, message] : cases) {
        const auto xml = writePropertyList(value);
        ASSERT_FALSE(xml.ok()) << message;
        EXPECT_THAT(xml.message(), HasSubstr(message));
        EXPECT_LT(xml.message().size(), 500u);
    }
}

TEST(PropertyList, RefusesXmlThatReadersWouldTakeDifferently) {
    for (const char* body : {"",
                             "<true/><true/>",
                             "<true>x</true>",
                             "<array><true/>",
                             "<array></dict>",
                             "<real/>",
                             "<array><key>a</key></array>",
                             "<dict><true/></dict>",
                             "<string a='b'/>",
                             "<uid>1</uid>",
                             "<dict><key>a</key><key>b</key></dict>",
                             "<string>a<b/></string>",
                             "x",
                             "<integer/>",
                             "<array>x</array>",
                             "<string>&nbsp;</string>",
                             "<string>&#xD800;</string>",
                             "<!--><true/>--><true/>",
                             "<real>1<!-- -->2</real>",
                             "<real>1e999</real>",
                             "<real>0x1p3</real>",
                             "<real>1,5</real>",
                             "<integer>1.5</integer>",
                             "<integer>+-1</integer>",
                             "<date>2001-01-01T24:00:00Z</date>",
                             "<date>0000-01-01T00:00:00Z</date>",
                             "<data>AAA</data>",
                             "<data>A=AA</data>",
                             "<data>====</data>"})
        EXPECT_FALSE(readBody(body).ok()) << body;
    EXPECT_FALSE(read("<plist version=\"1.0\"><true/></plist>x").ok());
    EXPECT_FALSE(read("<plist version=\"1.0\"><true/>").ok());
}

TEST(PropertyList, KeepsToTheLimitsItIsGiven) {
    const std::string text = "<plist><array><array/><true/></array></plist>";
    EXPECT_TRUE(read(text, {text.size(), 2, 3}).ok());
    EXPECT_THAT(read(text, {text.size() - 1, 2, 3}).message(), HasSubstr("44 are read at most"));
    EXPECT_THAT(read(text, {text.size(), 1, 3}).message(), HasSubstr("nested more than 1 deep"));
    EXPECT_THAT(read(text, {text.size(), 2, 2}).message(), HasSubstr("more than 2 values"));
}

TEST(PropertyListFile, ReplacesTheFileAsAWholeOrLeavesIt) {
    TemporaryFolder folder;
    const auto path = folder / "a.plist";
    const PropertyDictionary values{{"a", 1}};
    ASSERT_TRUE(writePropertyListFile(path, values).ok());
    const auto failed = writePropertyListFile(path, {{"a", kInfinity}});
    ASSERT_FALSE(failed.ok());
    EXPECT_EQ(failed.message(), path.string() + " cannot be written: a: a real that is not finite "
                                                "cannot be kept; use a number");
    EXPECT_EQ(readPropertyListFile(path).value(), values);
    EXPECT_EQ(folder.entries(), 1);
}

TEST(PropertyListFile, NamesTheFileThatCannotBeRead) {
    TemporaryFolder folder;
    writeText(folder / "array", "<plist><array/></plist>");
    writeText(folder / "text", "hello");
    const std::pair<const char*, const char*> cases[] = {{"missing", "there is no such file"},
                                                         {"", "it is no ordinary file"},
                                                         {"array", "a dictionary is needed"},
                                                         {"text", "neither an XML nor a binary"}};
    for (const auto& [name, reason] : cases) {
        const auto path = folder / name;
        const std::string begin = path.string() + " cannot be read: ";
        EXPECT_THAT(readPropertyListFile(path).message(),
                    testing::AllOf(testing::StartsWith(begin), HasSubstr(reason)));
    }
}

} // namespace
} // namespace zephyra
