// A take of the scan as text.

#include "rendering/take_file.h"

#include <gtest/gtest.h>
#include <utility>

namespace zephyra {
namespace {

TEST(TakeFile, ReadsWhatItWritesAndNamesTheLineThatIsWrong) {
    const std::vector<float> positions = {0.0f, 1.0f / 3, 0.1f, 1e-7f, 1.0f};
    const auto back = parseTake(takeText(positions), "take");
    ASSERT_TRUE(back) << back.message();
    EXPECT_EQ(back.value(), positions);
    std::string most = "\xEF\xBB\xBFPosition\r\n\n# by hand\n";
    for (int i = 0; i < 1800; ++i) most += "0.5\r\n";
    EXPECT_EQ(parseTake(most, "take").value().size(), 1800u);
    const std::pair<std::string, const char*> wrong[] = {
        {most + "0.5", "take, line 1804: a take has at most 1800"},
        {"0\nposition\n1", "take, line 2: a position is"},
        {"0\n1.01", "take, line 2: a position is"},
        {"0\n#\nnan", "take, line 3: a position is"},
        {"0.5", "at least 2 positions, one a line, 15 a second; this one has 1"},
    };
    for (const auto& [text, message] : wrong)
        EXPECT_NE(parseTake(text, "take").message().find(message), std::string::npos) << message;
}

} // namespace
} // namespace zephyra
