// Names, numbers and odd bytes as people type and read them.

#include "platform/text/message_text.h"
#include "platform/text/names.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/text_numbers.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(NearestName, FindsWhatWasMeant) {
    EXPECT_EQ(plainName(" rnd_PITCH/2"), "rndpitch2");
    EXPECT_EQ(editDistance("ptich", "pitch"), 1u) << "two swapped neighbours";
    const std::string_view names[] = {"Pan", "Pitch", "Rnd Pitch"};
    EXPECT_EQ(nearestName("PTICH", names), "Pitch");
    EXPECT_EQ(nearestName("rndpich", names), "Rnd Pitch");
}

TEST(TextNumbers, AreReadWholeAndWrittenShort) {
    EXPECT_EQ(parseNumber("-0.5"), -0.5);
    EXPECT_EQ(parseNumber("+3"), 3.0);
    for (const char* wrong : {"", "+", "+-3", "1,5", "1.5x", " 1", "nan", "inf", "1e999", "0x10"})
        EXPECT_FALSE(parseNumber(wrong)) << wrong;
    EXPECT_FALSE(parseWhole("-1"));
    EXPECT_FALSE(parseWhole("18446744073709551616"));
    EXPECT_EQ(formatNumber(0.341f), "0.341");
    EXPECT_EQ(formatDuration(59.96), "1:00 min");
    EXPECT_EQ(formatDuration(3723), "1:02:03 h");
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
        {"\uffff\ufffe", "\\xEF\\xBF\\xBF\\xEF\\xBF\\xBE", "\uffff\ufffe"},
    };
    for (const auto& [bytes, typed, line] : cases) {
        EXPECT_EQ(typedFromBytes(bytes), typed);
        EXPECT_EQ(bytesFromTyped(typed), bytes) << typed;
        EXPECT_EQ(onOneLine(bytes), line);
    }
    EXPECT_EQ(bytesFromTyped("\\xfF"), "\xff");
}

} // namespace
} // namespace zephyra
