// Names, numbers and odd bytes as people type and read them.

#include "platform/text/characters.h"
#include "platform/text/decibels.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/quantities.h"
#include "platform/text/text_numbers.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

TEST(DecibelText, HasOneDecimalAndAWordForSilence) {
    EXPECT_EQ(decibelText(0.5), "-6.0 dB");
    EXPECT_EQ(decibelText(0), "silent");
    EXPECT_EQ(decibelText(0, "-"), "-");
}

TEST(NearestName, FindsWhatWasMeant) {
    EXPECT_EQ(plainName(" rnd_PITCH/2"), "rndpitch2");
    EXPECT_EQ(editDistance("ptich", "pitch"), 1u) << "two swapped neighbours";
    const std::string_view names[] = {"Pan", "Pitch", "Rnd Pitch"};
    EXPECT_EQ(nearestName("PTICH", names), "Pitch");
    EXPECT_EQ(nearestName("rndpich", names), "Rnd Pitch");
    EXPECT_EQ(nearestName("rnd", names), "Rnd Pitch") << "a part of it";
}

TEST(TextNumbers, AreReadWholeAndWrittenShort) {
    EXPECT_EQ(std::tuple(parseNumber("-0.5"), parseNumber("+3")), std::tuple(-0.5, 3.0));
    for (const char* wrong : {"", "+", "+-3", "1,5", "1.5x", " 1", "nan", "inf", "1e999", "0x10"})
        EXPECT_FALSE(parseNumber(wrong)) << wrong;
    EXPECT_FALSE(parseWhole("-1") || parseWhole("18446744073709551616"));
    EXPECT_EQ(formatNumber(0.341f), "0.341");
    EXPECT_EQ(formatDuration(59.96), "1:00 min");
    EXPECT_EQ(formatDuration(3723), "1:02:03 h");
}

TEST(Quantities, AreCountedInTheUnitThatIsAskedFor) {
    const std::tuple<const char*, const char*, double> cases[] = {
        {"Hz", "80", 80},         {"Hz", "80Hz", 80},
        {"Hz", "1.5 kHz", 1500},  {"Hz", "48k", 48000},
        {"ms", "85ms", 85},       {"ms", "0.3 s", 300},
        {"s", "300 MS", 0.3},     {"s", "2min", 120},
        {"semitones", "+7st", 7}, {"st", "-1 octave", -12},
        {"st", "50 cents", 0.5},  {"%", "70", 70},
        {"%", "70%", 70},         {"x", "50 percent", 0.5},
        {"x", "-2x", -2},         {"dB", "-6", -6},
        {"dB", "-6 dB", -6},      {"bpm", "96bpm", 96},
        {"s", "1e-1s", 0.1},      {"", "3", 3}};
    for (const auto& [unit, text, number] : cases) EXPECT_EQ(parseIn(unit, text), number) << text;
    const std::pair<const char*, const char*> wrong[] = {
        {"Hz", "85ms"}, {"ms", "80Hz"}, {"st", "2x"},     {"", "3%"},       {"Hz", ""},
        {"Hz", "Hz"},   {"Hz", "3 "},   {"Hz", "3 4"},    {"Hz", "nan Hz"}, {"Hz", "inf"},
        {"Hz", "+-3"},  {"s", "0x10"},  {"s", "1e308 h"}, {"s", "4b"},      {"dB", "50%"}};
    for (const auto& [unit, text] : wrong) EXPECT_FALSE(parseIn(unit, text)) << text;
    EXPECT_EQ(std::tuple(parseLevel("0.5"), parseLevel("50%")), std::tuple(0.5, 0.5));
    EXPECT_NEAR(parseLevel("-12 dB").value_or(0), 0.2512, 1e-4);
    EXPECT_FALSE(parseLevel("1 Hz"));
}

TEST(Times, AreReadAsTheyAreTypedAndShown) {
    const std::pair<const char*, double> cases[] = {
        {"2.5", 2.5},      {"90s", 90},           {"500ms", 0.5}, {"2 min", 120}, {"1:30", 90},
        {"0:00.25", 0.25}, {"1:02:03.5", 3723.5}, {"4b", 2},      {"4 beats", 2}, {"90:00", 5400}};
    for (const auto& [text, seconds] : cases) {
        const auto time = parseTime(text);
        ASSERT_TRUE(time) << text;
        EXPECT_EQ(time->seconds(120), seconds) << text;
    }
    for (const double shown : {0.25, 12.3, 245.0, 3723.0}) {
        const auto time = parseTime(formatDuration(shown));
        ASSERT_TRUE(time) << shown;
        EXPECT_EQ(time->seconds(1), shown);
    }
    for (const char* wrong : {"", "-1", "-1b", "1:60", "1:2:3:4", ":30", "1:", "1.5:30", "1:-3",
                              "a", "7st", "4 bars", "1:1e1", "4:05 h", "1:02:03 min"})
        EXPECT_FALSE(parseTime(wrong)) << wrong;
}

TEST(OddBytes, AreShownSoThatNoTwoNamesLookAlikeAndCanBeTyped) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"\u00e4 夜 100% \\ \\x4 \\xyz", "\u00e4 夜 100% \\ \\x4 \\xyz",
         "\u00e4 夜 100% \\ \\x4 \\xyz"},
        {"b\xff", "b\\xFF", "b\\xFF"},
        {"b\\xFF", "b\\x5CxFF", "b\\xFF"},
        {"b\\x5cxff", "b\\x5Cx5cxff", "b\\x5cxff"},
        {"\\x4\xff\\x\xff", "\\x4\\xFF\\x\\xFF", "\\x4\\xFF\\x\\xFF"},
        {"a\n\x7f\u0085\xe5\xa4", "a\\x0A\\x7F\\xC2\\x85\\xE5\\xA4", "a???\\xE5\\xA4"},
        {"\uffff\ufffe", "\\xEF\\xBF\\xBF\\xEF\\xBF\\xBE", "\uffff\ufffe"}};
    for (const auto& [bytes, typed, line] : cases) {
        EXPECT_EQ(typedFromBytes(bytes), typed);
        EXPECT_EQ(bytesFromTyped(typed), bytes) << typed;
        EXPECT_EQ(onOneLine(bytes), line);
    }
    EXPECT_EQ(bytesFromTyped("\\xfF"), "\xff");
}

TEST(Characters, EndWhereAReaderSeesThemEnd) {
    const std::pair<std::string, std::vector<std::size_t>> cases[] = {
        {"", {}},
        {"ab", {1, 2}},
        {"e\u0301x", {3, 4}},                                  // an accent that stands apart
        {"夜\U0001F468\u200D\U0001F467!", {3, 14, 15}},        // a joined emoji
        {"\U0001F1E9\U0001F1EA\U0001F1EB\U0001F1F7", {8, 16}}, // two flags
        {"\u05E9\u05B8a\xffz", {4, 5, 6, 7}}};
    for (const auto& [text, ends] : cases) EXPECT_EQ(characterEnds(text), ends) << text;
    EXPECT_EQ(composed("Zoe\u0308 夜\u0308"), "Zo\u00EB 夜\u0308");
    EXPECT_EQ(composed("e\u0301\xff"), "e\u0301\xff");
}

} // namespace
} // namespace zephyra
