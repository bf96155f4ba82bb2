#include "platform/lists/property_list.h"
#include "platform/lists/property_reader.h"

#include "tests/support/testing.h"

#include <cfloat>

namespace zephyra {
namespace {

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
    const std::pair<double, const char*> cases[] = {{0, "2001-01-01T00:00:00Z"},
                                                    {0.9, "2001-01-01T00:00:00Z"},
                                                    {-0.1, "2000-12-31T23:59:59Z"},
                                                    {730902615, "2024-02-29T12:30:15Z"},
                                                    {-3182198400, "1900-03-01T00:00:00Z"},
                                                    {2147483648, "2069-01-19T03:14:08Z"},
                                                    {-63113904000, "0001-01-01T00:00:00Z"},
                                                    {252423993599, "9999-12-31T23:59:59Z"}};
    for (const auto& [seconds, text] : cases) {
        const auto xml = must(writePropertyList(PropertyDate{seconds}));
        EXPECT_THAT(xml, HasSubstr("<date>" + std::string(text) + "</date>"));
        EXPECT_EQ(roundTrip(PropertyDate{seconds}),
                  PropertyValue(PropertyDate{std::floor(seconds)}));
    }
}

TEST(PropertyList, TextWholeNumbersAndDataOfEveryLengthComeBack) {
    PropertyData::Bytes data;
    PropertyDictionary many{{"", "empty"}, {"<&>\r\n", "]]>\"'\r\n\t\x7f \xef\xbf\xbd "}};
    for (int i = 0; i < 1200; ++i) {
        many[std::to_string(i * 7919)] = i < 200 ? PropertyValue(PropertyData(data)) : i;
        data.push_back(std::byte(i * 73));
    }
    for (const std::int64_t number : {INT64_MIN, std::int64_t{-1}, INT64_MAX})
        many[std::to_string(number)] = number;
    EXPECT_EQ(roundTrip(many), PropertyValue(many));
    EXPECT_EQ(readBody("<integer> +010 </integer>").value(), PropertyValue(10));
    const PropertyData foob = {std::byte{'f'}, std::byte{'o'}, std::byte{'o'}, std::byte{'b'}};
    EXPECT_THAT(writePropertyList(foob).value(), HasSubstr("<data>Zm9vYg==</data>"));
}

TEST(PropertyList, RefusesToWriteWhatItCannotHoldAndNamesTheKey) {
    PropertyValue deep = PropertyArray();
    for (int i = 0; i < 64; ++i) deep = PropertyArray{deep};
    const std::pair<PropertyValue, std::string> cases[] = {
        {PropertyDictionary{{"Pad", PropertyArray{1, PropertyDictionary{{"x", HUGE_VAL}}}}},
         "Pad[1].x: a real that is not finite cannot be kept; use a number"},
        {PropertyDictionary{{"a\n", "\x01"}}, "a?: text with control characters"},
        {PropertyDictionary{{"\x01", 1}}, "?: text with control characters"},
        {std::string("a\0", 2), "text with control characters"},
        {"\xed\xa0\x80", "text that is not UTF-8"},
        {"\xe0\x80\x80", "text that is not UTF-8"},
        {"\xef\xbf\xbf", "text with control characters"},
        {PropertyDate{-63113904000.5}, "a date outside the years 1 to 9999"},
        {PropertyDate{std::nan("")}, "a date outside the years 1 to 9999"},
        {deep, "nested more than 64 deep"},
        {PropertyDictionary{{std::string(500, 'k'), HUGE_VAL}}, "kkk...: a real"}};
    for (const auto& [value, message] : cases) {
        const std::string said = failureOf(writePropertyList(value));
        EXPECT_THAT(said, HasSubstr(message));
        EXPECT_LT(said.size(), 500u);
    }
}

TEST(PropertyList, RefusesXmlThatReadersWouldTakeDifferently) {
    const std::pair<std::string, std::vector<std::string>> refused[] = {
        {"", {"", "<true/><true/>", "<array></dict>", "<string a='b'/>", "<uid>1</uid>"}},
        {"true", {"x", "<!-- -->"}},
        {"array", {"<key>a</key>", "&#32;", "<![CDATA[ ]]>"}},
        {"string", {"a<b/>", "&#xD800;"}},
        {"real", {"1<!-- -->2", "&#49;", "<![CDATA[1]]>", "1e999", "0x1p3"}},
        {"integer", {"+-1"}},
        {"date", {"2001-01-01T24:00:00Z", "0000-01-01T00:00:00Z"}},
        {"data", {"A=AA", "===="}}};
    for (const auto& [tag, texts] : refused)
        for (std::string body : texts) {
            if (!tag.empty()) body = "<" + tag + ">" + body + "</" + tag + ">";
            EXPECT_FALSE(readBody(body).ok()) << body;
        }
}

TEST(PropertyList, NamesTheLineAndTheKeyOfWhatIsWrong) {
    const std::pair<const char*, const char*> cases[] = {
        {"<array>\n<true/>\r\n<real>x</real></array>",
         "[1]: in line 3 the real \"x\" cannot be read; use a decimal number"},
        {"<dict><true/></dict>",
         "the XML is damaged in line 1: a value in a dictionary has no key"},
        {"\n<string>]]></string>",
         "the XML is damaged in line 2: text holds ]]>; write ]]&gt; for it"},
        {"\n<!-- & -- --><true/>",
         "the XML is damaged in line 2: a comment holds --; only its end may"},
        {"<1/>", "the XML is damaged in line 1: a tag of plain form is needed, like <real>"},
        {"<array><string>a\n",
         "[0]: the XML is damaged in line 2: an end is needed of the element string"}};
    for (const auto& [body, message] : cases) EXPECT_EQ(readBody(body).message(), message);
}

TEST(PropertyList, ReadsNoDocumentThatCouldHideMoreThanItSays) {
    const std::string list = "<plist><string>&e;</string></plist>";
    const std::string plain = "<plist><true/></plist>";
    const std::string megabyte(1 << 20, 'a');
    const std::pair<std::string, const char*> refused[] = {
        {"<!DOCTYPE plist [<!ENTITY e 'x'>]>" + list, "declares entities of its own"},
        {"<!DOCTYPE plist [<!ENTITY % e SYSTEM '/etc/passwd'> %e;]>" + plain, "entities"},
        {"<!DOCTYPE plist SYSTEM '/etc/passwd'>" + list, "begins no known reference"},
        {"<!DOCTYPE html>" + plain, "another kind of document"},
        {"<?a b?>" + plain, "no processing instructions"},
        {plain + "<?a b?>", "no processing instructions"},
        {plain + "x", "something follows </plist>"},
        {"<html/>", "neither an XML nor a binary"},
        {"<?xml version=1.0?>" + plain, "; a list begins like <?xml"},
        {"<plist " + megabyte + "=''><true/></plist>", "too long"},
        {"<plist><!--" + megabyte + "--><true/></plist>", "too long"},
        {{"\xff\xfe<\0p\0", 6}, "zero byte"}};
    for (const auto& [text, reason] : refused)
        EXPECT_THAT(read(text).message(), HasSubstr(reason)) << text.substr(0, 80);
    EXPECT_TRUE(read("\xef\xbb\xbf<?xml version='1.0' encoding='Us-Ascii'?>\n<!-- a -->"
                     "<!DOCTYPE plist PUBLIC 'a' 'b'>" +
                     plain + "<!-- b -->\n")
                    .ok());
}

TEST(PropertyList, ReadsTextAcrossThePiecesThatTheParserIsGiven) {
    std::string body, expected; // pieces end within references, characters and line ends
    for (int i = 0; i < 30000; ++i) {
        body += "&amp;\xc3\xa9\r\n<!-- -->";
        expected += "&\xc3\xa9\n";
    }
    EXPECT_EQ(readBody("<string>" + body + "</string>").value(), PropertyValue(expected));
    const std::string comment = "<!--" + std::string(120000, ' ') + "-->";
    EXPECT_TRUE(readBody(comment + comment + comment + comment + "<true/>").ok());
}

TEST(PropertyList, CountsWhatABinaryListRepeatsAsOftenAsItDoes) {
    std::string list = "bplist00";
    list += "\xaf\x10\x64" + std::string(100, '\1'); // 100 times the second object
    list += "\x5f\x10\x64" + std::string(100, 'x');  // of 100 letters
    list += {8, 111, 0, 0, 0, 0, 0, 0, 1, 1};        // where both stand; sizes of numbers
    for (const int last : {2, 0, 214}) // objects, the top one, where their places stand
        list += std::string(7, '\0') + static_cast<char>(last);
    EXPECT_EQ(read(list).value(), PropertyValue(PropertyArray(100, std::string(100, 'x'))));
    EXPECT_THAT(read(list, {5000}).message(), HasSubstr("repeats itself to more than 5000 bytes"));
}

TEST(PropertyList, KeepsToTheLimitsItIsGiven) {
    const std::string text = "<plist><array><array/><true/></array></plist>";
    EXPECT_TRUE(read(text, {text.size(), 2, 3}).ok());
    EXPECT_THAT(read(text, {text.size() - 1, 2, 3}).message(), HasSubstr("44 are read at most"));
    EXPECT_THAT(read(text, {text.size(), 1, 3}).message(), HasSubstr("nested more than 1 deep"));
    EXPECT_THAT(read(text, {text.size(), 2, 2}).message(), HasSubstr("more than 2 values"));
    const PropertyValue list = PropertyArray{PropertyArray(), true};
    EXPECT_TRUE(writePropertyList(list, {0, 2, 3}).ok());
    EXPECT_THAT(writePropertyList(list, {0, 1, 3}).message(), HasSubstr("nested more than 1 deep"));
    EXPECT_THAT(writePropertyList(list, {0, 2, 2}).message(), HasSubstr("more than 2 values"));
}

TEST(PropertyListFile, NamesTheFileThatCannotBeReadOrWritten) {
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
                    AllOf(StartsWith(begin), HasSubstr(reason)));
    }
    EXPECT_EQ(writePropertyListFile(folder / "text", {{"a", HUGE_VAL}}).message(),
              (folder / "text").string() + " cannot be written: a: a real that is not finite "
                                           "cannot be kept; use a number");
    EXPECT_EQ(readText(folder / "text"), "hello");
}

TEST(PropertyReader, TakesWhatFitsAndNamesKeyAndTypesOfTheRest) {
    StateFindings findings;
    const PropertyDictionary values{{"one", 1},
                                    {"two", 2},
                                    {"half", 0.5},
                                    {"text", "x"},
                                    {"yes", true},
                                    {"nan", std::nan("")},
                                    {"list", PropertyArray{1}},
                                    {"later", "kept"}};
    PropertyReader reader(values, findings, "Pad", StandIn::usual);
    EXPECT_EQ(std::tuple(reader.real("half"), reader.real("two"), reader.whole("two")),
              std::tuple(0.5, 2.0, 2));
    EXPECT_EQ(std::tuple(reader.boolean("yes"), reader.boolean("one")), std::tuple(true, true));
    EXPECT_EQ(reader.text("text"), "x");
    EXPECT_EQ(reader.array("list"), values.at("list").as<PropertyArray>());
    EXPECT_FALSE(reader.real("missing") || reader.boolean("missing") || reader.data("missing"));
    EXPECT_TRUE(findings.empty());
    EXPECT_FALSE(reader.real("nan") || reader.real("yes") || reader.whole("half") ||
                 reader.boolean("two") || reader.dictionary("list"));
    for (const StateFinding& finding : findings) EXPECT_EQ(finding.standIn, StandIn::usual);
    std::vector<std::string> lines;
    for (const StateFinding& finding : findings) lines.push_back(lineOf(finding));
    EXPECT_THAT(lines,
                ElementsAre("Pad.nan: a value of type real is ignored; a finite real is needed",
                            "Pad.yes: a value of type boolean is ignored; a finite real is needed",
                            "Pad.half: a value of type real is ignored; a whole number is needed",
                            "Pad.two: a value of type whole number is ignored; a boolean is needed",
                            "Pad.list: a value of type array is ignored; a dictionary is needed"));
    EXPECT_EQ(reader.unknown(), (PropertyDictionary{{"later", "kept"}}));
}

} // namespace
} // namespace zephyra
