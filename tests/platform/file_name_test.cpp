#include "platform/files/file_name.h"

#include "platform/files/folder_entries.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using namespace std::string_view_literals;

TEST(FileName, IsOneNameOfValidTextWithoutControlCharacters) {
    const std::string longest = std::string(252, 'x') + "夜";
    for (const std::string_view name :
         {"..."sv, "User 0 - 15.11.2026 | 13:48:53"sv, "Čajka"sv, "e\u0301te\u0301"sv, "夜の音"sv,
          "صوت"sv, "\U0001F3B5"sv, " "sv, "\\"sv, "\u00a0"sv, std::string_view(longest)})
        EXPECT_TRUE(isFileName(name)) << name;
    for (const std::string_view name :
         {""sv, "."sv, ".."sv, "/"sv, "a/b"sv, "../a"sv, "a\0b"sv, "a\n"sv, "\x7f"sv, "a\u0085"sv,
          "\u009f"sv, "\uffff"sv, "\x80"sv, "a\xff"sv, "\xc0\xaf"sv, "\xed\xa0\x80"sv,
          "\xe5\xa4"sv})
        EXPECT_FALSE(isFileName(name)) << testing::PrintToString(name);
    EXPECT_FALSE(isFileName(std::string(256, 'x')));
    EXPECT_FALSE(isFileName(std::string(254, 'x') + "é")); // 255 characters
    for (const auto& [name, expected] : {std::pair(".x", true),
                                         {"..", false},
                                         {"..wav", false},
                                         {"...wav", false},
                                         {"....wav", true}})
        EXPECT_EQ(isFileNameWithoutExtension(name), expected) << name;
}

TEST(FileName, LosesPercentEscapesAndSurroundingBlanksOnly) {
    const std::pair<std::string, std::string> escapes[] = {
        {"a%20b", "a b"},   {"%e5%A4%9C", "夜"}, {"100%", "100%"},    {"%2", "%2"},
        {"%zz%41", "%zzA"}, {"%2541", "%41"},    {"%+1% 1", "%+1% 1"}};
    for (const auto& [text, expected] : escapes) EXPECT_EQ(percentDecoded(text), expected);
    const std::pair<std::string, std::string> blanks[] = {
        {" \t\r\n", ""}, {"\u00a0\u3000a b\u2003", "a b"}, {" \x80 ", "\x80"}, {"夜 ", "夜"}};
    for (const auto& [text, expected] : blanks) EXPECT_EQ(trimmed(text), expected);
}

TEST(IncrementalName, StandsOneAboveTheLargestNumberBehindItsBase) {
    const TemporaryFolder folder;
    const auto next = [&](const char* base = "Rec") {
        return getIncrementalNameFromDocumentsFolder(folder.path(), base);
    };
    EXPECT_EQ(getIncrementalNameFromDocumentsFolder(folder / "none", "Rec"), "Rec 1");
    for (const auto& [entry, expected] :
         {std::pair("Record 3.wav", "Rec 1"),
          {"Rec 7.wav", "Rec 8"},
          {"Rec -20", "Rec 8"},
          {"My Rec \t12x99", "Rec 13"},
          {"Rec Rec 50", "Rec 13"},
          {"Rec 99999999999999999999", "Rec 9223372036854775807"}}) {
        writeText(folder / entry, "");
        EXPECT_EQ(next(), expected) << entry;
    }
    EXPECT_EQ(next("Take 2"), "Take 2 1"); // its own digit is no number behind it
    writeText(folder / "Take 2 4.wav", "");
    EXPECT_EQ(next("Take 2"), "Take 2 5");
}

} // namespace
} // namespace zephyra
