#include "library/bank_check.h"

#include "library/bank_edits.h"
#include "library/bank_mending.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

CheckedBank checked(const std::string& text, const RecordCheck& check = {},
                    const CheckProgress& progress = {}) {
    const auto bytes = std::as_bytes(std::span(text));
    return checkBank({bytes.begin(), bytes.end()}, check, progress);
}

PropertyDictionary named(const char* name) {
    return {{kSnapshotTags, name}, {"Density_0", 0.5}, {"Inner", PropertyDictionary{{"x", 1}}}};
}

/// Three presets as their file has them.
std::string soundText() {
    return writePropertyList(Bank{{"0-a", named("A")}, {"1-b&c", named("B")}, {"2-d", named("D")}})
        .value();
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

std::vector<std::string> keysOf(const std::vector<BankFinding>& findings) {
    std::vector<std::string> keys;
    for (const BankFinding& finding : findings)
        keys.push_back((finding.fatal ? "!" : "") + finding.key);
    return keys;
}

TEST(BankCheck, NamesTheKeyOfEveryFindingAndMendingLeavesOutWhatIsWrong) {
    Bank bank = {{"0-a", named("A")},
                 {"1 - b", "text"},
                 {"2 - c", PropertyDictionary{}},
                 {"3 - d", PropertyDictionary{{kSnapshotTags, 3}}},
                 {"4 - e", named("A")},
                 {"f", named("F")}};
    const std::string text = writePropertyList(bank).value();
    const auto check = [](const std::string& key, const PropertyDictionary& record) {
        std::vector<BankFinding> found;
        if (key != "0-a" || !record.contains("Density_0")) return found;
        found.push_back({key + ".Density_0", "is wrong"});
        found.push_back({key + ".Inner", "names a file that is gone", false, true});
        return found;
    };
    const auto [findings, mended, isWhole] = checked(text, check);
    EXPECT_THAT(keysOf(findings), ElementsAre("0-a.Density_0", "0-a.Inner", "!1 - b", "2 - c",
                                              "3 - d.SnapshotTags", "4 - e", "f"));
    EXPECT_TRUE(isWhole);
    ASSERT_TRUE(mended);
    recordOf(bank, "0-a")->erase("Density_0");
    bank.erase("1 - b");
    for (const char* const key : {"2 - c", "3 - d"})
        recordOf(bank, key)->insert_or_assign(kSnapshotTags, kUnnamed);
    EXPECT_TRUE(mended->bank == bank);
    EXPECT_EQ(std::tuple(mended->notes.size(), mended->lost), std::tuple(4u, 1u));
    EXPECT_THAT(checked(soundText()).findings, ElementsAre());
    EXPECT_THAT(keysOf(checked("no list").findings), ElementsAre("!"));
    EXPECT_THAT(keysOf(checked("<plist><array/></plist>").findings), ElementsAre("!"));
}

TEST(BankCheck, MendingKeepsEveryPresetThatIsWhole) {
    using Keys = std::vector<std::string>;
    const Keys all = {"0-a", "1-b&c", "2-d"};
    const std::string sound = soundText();
    const std::size_t second = sound.find("\t<key>1");
    const std::string rest = sound.substr(second);
    std::string line = sound;
    std::erase_if(line, [](char byte) { return byte == '\n' || byte == '\t'; });
    const std::tuple<const char*, std::string, Keys, std::size_t, std::size_t> damages[] = {
        {"cut off", sound.substr(0, sound.rfind("</dict>") - 9), {"0-a", "1-b&c"}, 1, 1},
        {"no end", sound.substr(0, second) + replaced(rest, "</dict>", ""), {"0-a", "2-d"}, 1, 1},
        {"ends too many", replaced(line, "<key>x</key>", "</dict></dict>"), all, 1, 3},
        {"no number", replaced(line, "<real>0.5", "<real>half"), {"1-b&c", "2-d"}, 1, 1},
        {"no beginning", rest.substr(20), {"2-d"}, 0, 0},
        {"comment", replaced(sound, "</plist>", "<!--<key>3</key><dict/>-->"), all, 0, 0},
        {"key twice", replaced(sound, "2-d", "0-a"), {"0-a", "0-a (2)", "1-b&c"}, 0, 0},
        {"no dictionary", replaced(sound, "</plist>", "\n\t<key>3</key>\n\t<true/>"), all, 1, 1}};
    for (const auto& [how, text, kept, lost, notes] : damages) {
        SCOPED_TRACE(how);
        const auto [findings, mended, isWhole] = checked(text);
        EXPECT_TRUE(findings.front().fatal);
        EXPECT_GE(findings.size(), 2 + lost);
        EXPECT_THAT(findings.back().text, HasSubstr("whole"));
        ASSERT_TRUE(mended);
        EXPECT_EQ(std::tuple(sortedKeys(mended->bank), mended->lost), std::tuple(kept, lost));
        EXPECT_EQ(mended->notes.size(), notes);
        for (const auto& [key, record] : mended->bank)
            EXPECT_EQ(record.as<PropertyDictionary>()->size(), 3u) << key;
    }
    EXPECT_TRUE(checked("<plist><dict/></plist>").mended) << "empty, and whole";
    for (const char* const text : {"", "no list", "bplist00", "<plist><dict><key>a</key>",
                                   "<plist><dict><key>a</key><true/></dict></plist>"})
        EXPECT_FALSE(checked(text).mended) << text;
}

TEST(BankCheck, NotesTheFirstThousandByKeyWhicheverPresetIsListedFirst) {
    Bank bank;
    std::vector<std::string> expected;
    for (std::size_t n = 0; n <= kMostFindings; ++n)
        bank.emplace(std::to_string(n) + " - a", PropertyDictionary{});
    for (const auto& [key, record] : bank)
        if (expected.size() < kMostFindings)
            expected.push_back(shownKey(key) + " was named " + kUnnamed);
    expected.emplace_back("and 1 more");
    EXPECT_EQ(checked(writePropertyList(bank).value()).mended->notes, expected);
}

TEST(BankCheck, EndsWithWhatItHasOnceItsProgressSaysSo) {
    std::vector<double> shares;
    const auto some = checked(
        soundText(),
        [](const std::string& key, const auto&) {
            return std::vector{BankFinding{key, "is wrong"}};
        },
        [&shares](double share) { return shares.push_back(share), shares.size() < 2; });
    EXPECT_THAT(shares, ElementsAre(0.0, 1.0 / 3));
    EXPECT_FALSE(some.isWhole);
    EXPECT_THAT(keysOf(some.findings), ElementsAre("0-a"));
}

TEST(BankCheck, TakesNoLongerThanTheTextOfAHostileFileIsLong) {
    const auto start = std::chrono::steady_clock::now();
    const std::size_t length = kIsWatched ? 500'000 : 1'000'000;
    for (const char* const piece :
         {"<!--", "<![CDATA[", "<key>", "<dict>", "\n\t<key>a</key><dict>", "\n<key>a</key><dict/>",
          "<", "</dict>"}) {
        std::string text = "<plist><dict>\n<key>a</key>";
        while (text.size() < length) text += piece;
        EXPECT_LE(checked(text).findings.size(), kMostFindings + 1) << piece;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

} // namespace
} // namespace zephyra
