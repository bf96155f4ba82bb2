// The table of help texts and the keys that it names, and the page that lists them.
#include "audiounit/control_text.h"
#include "screens/model/help_texts.h"
#include "tests/support/testing.h"

#include <fstream>
#include <set>
#include <sstream>

namespace zephyra {
namespace {

/// "Ctrl+Shift+Z" as a keyboard sends it.
KeyStroke typed(std::string keys) {
    KeyStroke stroke;
    const auto takes = [&keys](const std::string& word) {
        if (!keys.starts_with(word)) return false;
        keys.erase(0, word.size());
        return true;
    };
    stroke.command = takes("Ctrl+");
    stroke.shift = takes("Shift+");
    stroke.key = keys == "Space" ? U' ' : static_cast<char32_t>(std::tolower(keys.at(0)));
    EXPECT_TRUE(keys == "Space" || keys.size() == 1) << keys;
    return stroke;
}

TEST(HelpTexts, AreOneSentenceEachAndNoTwoAlike) {
    std::set<std::string> all;
    const auto check = [&all](const std::string& text) {
        EXPECT_GE(text.size(), 7u) << text;
        EXPECT_LE(text.size(), 160u) << text;
        EXPECT_EQ(text.find('@'), std::string::npos) << text;
        EXPECT_TRUE(all.insert(text).second) << "twice: " << text;
    };
    for (const HelpText& row : helpTexts()) check(helpText(row.id, "told"));
    for (const ControlRange& range : controlRanges()) check(helpText(range.id));
    EXPECT_EQ(helpText(ControlId::density),
              "Density: How many grains start in a second. 0.5 to 400 Hz.");
    EXPECT_EQ(helpText(HelpId::undo, "Density"), "Undo Density (Ctrl+Z)");
}

TEST(HelpTexts, NameOnlyKeysThatTheWindowActsOn) {
    for (const ShortcutKey& one : kShortcutKeys)
        EXPECT_EQ(shortcutOf(typed(one.keys)), one.shortcut) << one.keys;
    std::set<Shortcut> named;
    for (const HelpText& row : helpTexts()) {
        if (!row.shortcut) continue;
        named.insert(*row.shortcut);
        std::string keys = keysOf(*row.shortcut);
        if (row.opposite) {
            named.insert(*row.opposite);
            keys += std::string(", ") + keysOf(*row.opposite);
        }
        EXPECT_THAT(helpText(row.id, "told"), testing::EndsWith("(" + keys + ")"));
    }
    EXPECT_EQ(named.size(), kShortcuts) << "a key that no text tells of";
}

TEST(HelpTexts, EveryKeyIsInTheListOfTheDocuments) {
    std::stringstream page;
    page << std::ifstream(ZEPHYRA_SOURCE_DIR "/docs/screen.md").rdbuf();
    for (const ShortcutKey& one : kShortcutKeys)
        EXPECT_THAT(page.str(), testing::HasSubstr(std::string("`") + one.keys + "`")) << one.keys;
}

} // namespace
} // namespace zephyra
