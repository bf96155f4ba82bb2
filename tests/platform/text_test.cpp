// Names and numbers as people type and read them.

#include "platform/text/names.h"
#include "platform/text/text_numbers.h"

#include <gtest/gtest.h>
#include <string_view>

namespace zephyra {
namespace {

TEST(NearestName, FindsWhatWasMeant) {
    EXPECT_EQ(plainName("Dry/Wet"), "drywet");
    EXPECT_EQ(plainName(" rnd_PITCH 2"), "rndpitch2");
    EXPECT_EQ(editDistance("kitten", "sitting"), 3u);
    EXPECT_EQ(editDistance("ptich", "pitch"), 1u) << "two swapped neighbours";
    EXPECT_EQ(editDistance("", "abc"), 3u);
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

} // namespace
} // namespace zephyra
